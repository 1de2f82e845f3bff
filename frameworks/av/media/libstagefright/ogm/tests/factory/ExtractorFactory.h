// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <media/MediaExtractorPluginApi.h>

#include <filesystem>
#include <list>
#include <memory>
#include <string>
#include <vector>

namespace android::ogm::test {

/**
 * The framework's extractor factory: registers the plug-ins of folders once, then opens data
 * sources with the one that is surest of itself.
 */
class ExtractorFactory {
  public:
    /** A plug-in that passed the checks, in the order in which it is asked. */
    struct Plugin {
        std::filesystem::path path;
        std::shared_ptr<void> library;
        ExtractorDef definition;
    };

    /** An extractor with the library that made it. */
    class OpenedExtractor {
      public:
        OpenedExtractor(CMediaExtractor* table, std::shared_ptr<void> library);

        CMediaExtractor* table() const { return mTable.get(); }
        /** What the framework asks for right after creation. */
        size_t trackCount() const { return mTrackCount; }
        const std::string& name() const { return mName; }

      private:
        struct Free {
            void operator()(CMediaExtractor* table) const;
        };
        // The order matters: the code of the library frees the extractor.
        std::shared_ptr<void> mLibrary;
        std::unique_ptr<CMediaExtractor, Free> mTable;
        size_t mTrackCount = 0;
        std::string mName;
    };

    /** Loads what the folders hold, in the order of the folders. */
    explicit ExtractorFactory(const std::vector<std::filesystem::path>& folders);

    const std::list<Plugin>& plugins() const { return mPlugins; }
    std::vector<std::string> names() const;
    /** What all plug-ins say they support, in their order. */
    std::vector<std::string> supportedTypes() const;

    /** Null when no plug-in takes the source, or when the one that wins makes no extractor. */
    std::unique_ptr<OpenedExtractor> open(CDataSource* source) const;

  private:
    struct Candidate;

    void registerFolder(const std::filesystem::path& folder);
    void registerPlugin(const std::filesystem::path& path);
    Candidate surest(CDataSource* source) const;

    // Definitions cannot be assigned, so the plug-ins stay where they are.
    std::list<Plugin> mPlugins;
};

}  // namespace android::ogm::test
