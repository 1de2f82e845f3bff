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
 * sources with the plug-in that reports the highest confidence.
 */
class ExtractorFactory {
  public:
    /** A plug-in that passed the checks. */
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
        /** What the framework reads right after creation. */
        size_t trackCount() const { return mTrackCount; }
        const std::string& name() const { return mName; }

      private:
        struct Free {
            void operator()(CMediaExtractor* table) const;
        };
        // Before the extractor, which the library's code frees.
        std::shared_ptr<void> mLibrary;
        std::unique_ptr<CMediaExtractor, Free> mTable;
        size_t mTrackCount = 0;
        std::string mName;
    };

    /** Loads the plug-ins of all folders, in the order of the folders. */
    explicit ExtractorFactory(const std::vector<std::filesystem::path>& folders);

    const std::list<Plugin>& plugins() const { return mPlugins; }
    std::vector<std::string> names() const;
    /** The types that all plug-ins report, in their order. */
    std::vector<std::string> supportedTypes() const;

    /** Null if no plug-in takes the source, or if the winning one creates no extractor. */
    std::unique_ptr<OpenedExtractor> open(CDataSource* source) const;

  private:
    struct Candidate;

    void registerFolder(const std::filesystem::path& folder);
    void registerPlugin(const std::filesystem::path& path);
    Candidate surest(CDataSource* source) const;

    // A list, because definitions cannot be assigned.
    std::list<Plugin> mPlugins;
};

}  // namespace android::ogm::test
