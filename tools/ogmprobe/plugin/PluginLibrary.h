// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <media/MediaExtractorPluginApi.h>

#include <filesystem>
#include <memory>
#include <optional>
#include <string>

#include "plugin/Extractor.h"

namespace ogmprobe {

/**
 * A plug-in's shared library, loaded and checked like in the framework's loader. Must outlive all
 * its extractors.
 */
class PluginLibrary {
  public:
    /**
     * Throws `ProbeError` with `ExitCode::kFile` if the library cannot be loaded or the framework
     * would refuse its definition.
     */
    explicit PluginLibrary(const std::filesystem::path& path);

    std::string name() const;
    uint32_t version() const;
    /** 32 hexadecimal digits with dashes. */
    std::string uuid() const;

    /**
     * Sniffs the source and creates an extractor. Throws `ProbeError` with `ExitCode::kNotTaken` if
     * the plug-in does not recognise the source or creates no extractor. The source must outlive
     * the extractor.
     */
    std::unique_ptr<Extractor> open(android::CDataSource* source) const;

    /** Returns the plug-in in the `lib` folder beside the program's folder, if there is one. */
    static std::optional<std::filesystem::path> findBeside(
            const std::filesystem::path& programFolder);

  private:
    struct Close {
        void operator()(void* handle) const;
    };

    std::unique_ptr<void, Close> mHandle;
    // In an optional because the record cannot be assigned.
    std::optional<android::ExtractorDef> mDefinition;
};

}  // namespace ogmprobe
