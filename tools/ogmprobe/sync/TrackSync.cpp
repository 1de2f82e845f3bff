// SPDX-License-Identifier: Apache-2.0
#include "sync/TrackSync.h"

#include <algorithm>

namespace ogmprobe {
namespace {

SyncPoint pointOf(const OggFile& file, const StreamAccount& account, const PageTimes& times,
                  const PlayedTrack& track, size_t unit) {
    SyncPoint point;
    point.unit = unit;
    point.offset = file.pieces()[account.packets.pieces[account.units[unit].firstPiece]].offset;
    point.pageUs = times.units[unit];
    point.buffer = account.delivery.units[unit].buffer;
    if (point.buffer) {
        point.pluginUs = track.buffers[*point.buffer].timeUs;
    }
    if (point.pageUs && point.pluginUs) {
        point.lateUs = TimeRange::at(*point.pluginUs) - *point.pageUs;
    }
    return point;
}

/**
 * All packets of a page may have the same time, so only the first packet of each page shows what
 * changes from page to page.
 */
std::vector<LatePoint> latePoints(const std::vector<SyncPoint>& points, const PageTimes& times) {
    std::vector<LatePoint> late;
    for (size_t i = 0; i < points.size(); ++i) {
        if (points[i].lateUs) {
            const bool isFirst = std::binary_search(times.firstOfPages.begin(),
                                                    times.firstOfPages.end(), points[i].unit);
            late.push_back({i, points[i].pageUs->middleUs(), *points[i].lateUs, isFirst});
        }
    }
    return late;
}

}  // namespace

TrackSync trackSyncOf(const OggFile& file, const StreamAccount& account, const PageTimes& times,
                      const PlayedTrack& track) {
    TrackSync sync;
    sync.track = *account.ledger.track;
    sync.serial = account.ledger.serial;
    sync.kind = track.description.kind;
    sync.reading = times.reading;
    sync.contentDriftPpm = times.contentDriftPpm;
    sync.isReadLikeOthers = times.isReadLikeOthers;
    for (size_t i = 0; i < account.units.size(); ++i) {
        if (!account.units[i].isComment) {
            sync.points.push_back(pointOf(file, account, times, track, i));
        }
    }
    sync.deviation = deviationOf(latePoints(sync.points, times));
    return sync;
}

}  // namespace ogmprobe
