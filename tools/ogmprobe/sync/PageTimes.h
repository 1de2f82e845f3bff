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
 * The times of a file's pages, without the plug-in. They follow from granule positions (RFC 3533)
 * and stream headers. If these do not determine when a packet begins, its time is a range. Usage:
 *
 *     const auto accounts = accountsOf(path, file, trace);
 *     for (const auto& [serial, times] : pageTimesOf(file, accounts)) {
 *         // times.units[i] is of accounts.at(serial).units[i]
 *     }
 */
namespace ogmprobe {

/** The times of a stream. */
struct PageTimes {
    GranuleReading reading = GranuleReading::kUnknown;
    /** Whether the reading was taken from other streams, because this one does not show it. */
    bool isReadLikeOthers = false;
    /**
     * How much faster the pages' time advances than that of their audio, which follows from samples
     * and rate; in millionths. Nothing if unknown, and for video.
     */
    std::optional<double> contentDriftPpm;
    /** When each unit of the account begins; nothing if no page shows it, and for comments. */
    std::vector<std::optional<TimeRange>> units;
    /** Rising indices of the units that are the first to end on their pages. */
    std::vector<size_t> firstOfPages;
};

/** By serial number. */
std::map<uint32_t, PageTimes> pageTimesOf(const OggFile& file,
                                          const std::map<uint32_t, StreamAccount>& accounts);

}  // namespace ogmprobe
