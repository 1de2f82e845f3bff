// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <vector>

#include "explain/OggFile.h"
#include "ledger/LedgerBuild.h"
#include "sync/GranuleReading.h"
#include "sync/TimeRange.h"

/**
 * The times of a file's pages, without the plug-in. Granule positions are read by RFC 3533 and the
 * stream headers. If they do not say when a packet begins, they give a range. Used like this:
 *
 *     const auto accounts = accountsOf(path, file, trace);
 *     for (const auto& [serial, times] : pageTimesOf(file, accounts)) {
 *         // times.units[i] is of accounts.at(serial).units[i]
 *     }
 */
namespace ogmprobe {

/** Of one stream. */
struct PageTimes {
    GranuleReading reading = GranuleReading::kUnknown;
    /** The reading is that of the file's other streams: this one does not show it. */
    bool isReadLikeOthers = false;
    /**
     * How much faster the pages' time goes than that of the audio on them, by its samples and their
     * rate: millionths. Nothing where that is not known, and of video.
     */
    std::optional<double> contentDriftPpm;
    /** When each unit of the account begins; nothing if no page shows it, and for comments. */
    std::vector<std::optional<TimeRange>> units;
    /** Indices of the units that are the first that end on their pages, rising. */
    std::vector<size_t> firstOfPages;
};

/** By serial number. */
std::map<uint32_t, PageTimes> pageTimesOf(const OggFile& file,
                                          const std::map<uint32_t, StreamAccount>& accounts);

}  // namespace ogmprobe
