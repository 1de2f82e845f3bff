// SPDX-License-Identifier: Apache-2.0
#include "PageColumns.h"

#include <algorithm>
#include <cmath>
#include <iterator>

namespace ogmprobe::timeline {
namespace {

// Bits of a packet's kind beside those of its type.
constexpr uint8_t kSyncBit = 4;

// The clamp keeps the rounded value within the integer type.
int64_t nearestUs(double timeUs) {
    constexpr auto kMost = static_cast<double>(kFarthestUs);
    return std::llround(std::clamp(timeUs, -kMost, kMost));
}

/**
 * Returns how much further the file was read for each packet than for the previous one, minus the
 * size of the packet `lead` places later: the packet that a plug-in reads if it keeps that many
 * packets ready.
 */
Column positionsOf(const std::vector<PacketPoint>& packets, uint64_t lead) {
    Column column;
    uint64_t before = 0;
    for (size_t i = 0; i < packets.size(); ++i) {
        const uint64_t expected =
                i + lead < packets.size() ? before + packets[i + lead].size : before;
        column.addSigned(static_cast<int64_t>(packets[i].readUpTo - expected));
        before = packets[i].readUpTo;
    }
    return column;
}

/** Returns the lead that makes the column shortest. */
uint64_t leadOf(const std::vector<PacketPoint>& packets) {
    constexpr uint64_t kMaxLead = 16;
    constexpr size_t kSample = 2000;
    const std::vector<PacketPoint> sample(
            packets.begin(),
            packets.begin() + static_cast<ptrdiff_t>(std::min(packets.size(), kSample)));
    uint64_t best = sample.size();
    size_t least = positionsOf(sample, best).bytes().size();
    for (uint64_t lead = 0; lead <= kMaxLead; ++lead) {
        if (const size_t size = positionsOf(sample, lead).bytes().size(); size < least) {
            least = size;
            best = lead;
        }
    }
    return best == sample.size() ? packets.size() : best;
}

}  // namespace

void PageColumns::addPages(const std::vector<FilePage>& pages) {
    Column distances;
    Column sizes;
    Column streams;
    std::map<uint32_t, std::vector<const FilePage*>> pagesOf;
    uint64_t end = 0;
    for (const FilePage& page : pages) {
        pagesOf[page.serial].push_back(&page);
    }
    for (const FilePage& page : pages) {
        distances.addSigned(static_cast<int64_t>(page.offset - end));
        sizes.add(page.size);
        const auto stream = std::distance(pagesOf.begin(), pagesOf.find(page.serial));
        streams.add(static_cast<uint64_t>(stream));
        end = page.offset + page.size;
    }
    add({distances, sizes, streams});
    addPageTimes(pagesOf);
}

void PageColumns::addPackets(const std::vector<PacketPoint>& packets) {
    SteadyColumn times;
    Column sizes;
    Column kinds;
    SteadyColumn pages;
    Column digests;
    for (const PacketPoint& packet : packets) {
        times.add(packet.timeUs);
        sizes.add(packet.size);
        kinds.addByte(static_cast<uint8_t>(static_cast<int>(packet.type) |
                                           (packet.isSync ? kSyncBit : 0)));
        pages.add(packet.page ? int64_t{*packet.page} + 1 : 0);
        addDigest(packet.digest, digests);
    }
    const uint64_t lead = leadOf(packets);
    mLeads.push_back(lead);
    add({times.column(), sizes, kinds, positionsOf(packets, lead), pages.column(), digests});
}

void PageColumns::addRanges(const std::vector<PacketPoint>& packets,
                            std::optional<TimeRange> PacketPoint::*range) {
    Column known;
    SteadyColumn least;
    Column widths;
    TimeRange last;
    for (const PacketPoint& packet : packets) {
        const std::optional<TimeRange>& own = packet.*range;
        last = own.value_or(last);
        known.addByte(own ? 1 : 0);
        least.add(last.leastUs);
        widths.add(own ? static_cast<uint64_t>(last.mostUs) - static_cast<uint64_t>(last.leastUs)
                       : 0);
    }
    add({known, least.column(), widths});
}

void PageColumns::addLost(const std::vector<LostPacket>& packets) {
    SteadyColumn times;
    Column sizes;
    SteadyColumn pages;
    Column reasons;
    for (const LostPacket& packet : packets) {
        times.add(packet.timeUs);
        sizes.add(packet.size);
        pages.add(int64_t{packet.page} + 1);
        reasons.add(numberOf(packet.reason));
    }
    add({times.column(), sizes, pages.column(), reasons});
}

void PageColumns::addGaps(const std::vector<Gap>& gaps) {
    SteadyColumn begins;
    SteadyColumn ends;
    for (const Gap& gap : gaps) {
        begins.add(nearestUs(gap.fromUs));
        ends.add(nearestUs(gap.toUs));
    }
    add({begins.column(), ends.column()});
}

void PageColumns::addText(const std::string& text) {
    Column bytes;
    for (const char character : text) {
        bytes.addByte(static_cast<uint8_t>(character));
    }
    add({bytes});
}

void PageColumns::addPageTimes(const std::map<uint32_t, std::vector<const FilePage*>>& pagesOf) {
    SteadyColumn sequences;
    Column known;
    SteadyColumn times;
    int64_t lastUs = 0;
    for (const auto& [serial, pages] : pagesOf) {
        for (const FilePage* page : pages) {
            sequences.add(page->sequence);
            known.addByte(page->timeUs ? 1 : 0);
            lastUs = page->timeUs.value_or(lastUs);
            times.add(lastUs);
        }
    }
    add({sequences.column(), known, times.column()});
}

void PageColumns::add(std::initializer_list<Column> columns) {
    for (const Column& column : columns) {
        mSizes.push_back(mPacked.add(column));
    }
}

void PageColumns::addDigest(uint64_t digest, Column& digests) const {
    for (uint64_t i = 0; i < mDigestBytes; ++i) {
        digests.addByte(static_cast<uint8_t>(digest >> (56 - 8 * i)));
    }
}

size_t PageColumns::numberOf(const std::string& reason) {
    const auto [entry, isNew] = mReasonNumbers.emplace(reason, mReasons.size());
    if (isNew) {
        mReasons.push_back(reason);
    }
    return entry->second;
}

}  // namespace ogmprobe::timeline
