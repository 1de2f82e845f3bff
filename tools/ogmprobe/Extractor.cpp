// SPDX-License-Identifier: Apache-2.0
#include "Extractor.h"

#include <cstdlib>

#include "PluginCall.h"

namespace ogmprobe {

void Extractor::Free::operator()(android::CMediaExtractor* table) const {
    {
        const PluginCall call("the extractor's free");
        table->free(table->data);
    }
    ::free(table);
}

Extractor::Extractor(android::CMediaExtractor* table) : mTable(table) {
    {
        const PluginCall call("countTracks");
        mTrackCount = table->countTracks(table->data);
    }
    {
        const PluginCall call("name");
        mName = table->name(table->data);
    }
    const PluginCall call("getMetaData");
    if (table->getMetaData(table->data, mFormat.get()) != AMEDIA_OK) {
        mFormat = Format();
    }
}

Format Extractor::trackFormat(size_t index) const {
    Format format;
    const PluginCall call("getTrackMetaData");
    const media_status_t status = mTable->getTrackMetaData(mTable->data, format.get(), index, 0);
    return status == AMEDIA_OK ? std::move(format) : Format();
}

std::unique_ptr<Track> Extractor::track(size_t index) const {
    android::CMediaTrack* track = nullptr;
    {
        const PluginCall call("getTrack");
        track = mTable->getTrack(mTable->data, index);
    }
    return track != nullptr ? std::make_unique<Track>(index, track) : nullptr;
}

}  // namespace ogmprobe
