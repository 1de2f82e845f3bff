// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <media/MediaExtractorPluginApi.h>

#include <cstddef>
#include <memory>
#include <string>

#include "plugin/Format.h"
#include "plugin/Track.h"

namespace ogmprobe {

/**
 * An extractor that a plug-in has created, freed with this object. Its tracks must be freed first,
 * and its data source and library must outlive it.
 */
class Extractor {
  public:
    /** Takes ownership of the table and makes the calls that the framework makes after creation. */
    explicit Extractor(android::CMediaExtractor* table);

    size_t trackCount() const { return mTrackCount; }
    const std::string& name() const { return mName; }
    /** The container's format. */
    const Format& format() const { return mFormat; }

    /** Returns the format in the track list; empty if the extractor returns none. */
    Format trackFormat(size_t index) const;
    /** Returns null if the extractor refuses. */
    std::unique_ptr<Track> track(size_t index) const;

  private:
    struct Free {
        void operator()(android::CMediaExtractor* table) const;
    };

    std::unique_ptr<android::CMediaExtractor, Free> mTable;
    size_t mTrackCount = 0;
    std::string mName;
    Format mFormat;
};

}  // namespace ogmprobe
