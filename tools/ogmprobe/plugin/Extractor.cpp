// SPDX-License-Identifier: Apache-2.0
#include "plugin/Extractor.h"

#include <cstdlib>

#include "plugin/PluginCall.h"

namespace ogmprobe {

void Extractor::Free::operator()(android::CMediaExtractor* table) const {
    {
        const PluginCall call(PluginFunction::kFreeExtractor);
        table->free(table->data);
    }
    ::free(table);
}

Extractor::Extractor(android::CMediaExtractor* table) : mTable(table) {
    {
        const PluginCall call(PluginFunction::kCountTracks);
        mTrackCount = table->countTracks(table->data);
    }
    {
        const PluginCall call(PluginFunction::kName);
        mName = table->name(table->data);
    }
    PluginCall call(PluginFunction::kGetMetaData);
    if (call.returned(table->getMetaData(table->data, mFormat.get())) != AMEDIA_OK) {
        mFormat = Format();
    }
}

Format Extractor::trackFormat(size_t index) const {
    Format format;
    PluginCall call(PluginFunction::kGetTrackMetaData, index);
    const media_status_t status =
            call.returned(mTable->getTrackMetaData(mTable->data, format.get(), index, 0));
    return status == AMEDIA_OK ? std::move(format) : Format();
}

std::unique_ptr<Track> Extractor::track(size_t index) const {
    android::CMediaTrack* track = nullptr;
    {
        const PluginCall call(PluginFunction::kGetTrack, index);
        track = mTable->getTrack(mTable->data, index);
    }
    return track != nullptr ? std::make_unique<Track>(index, track) : nullptr;
}

}  // namespace ogmprobe
