// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <initializer_list>
#include <map>
#include <string>
#include <vector>

#include "Packing.h"
#include "Timeline.h"
#include "Timing.h"

namespace ogmprobe::timeline {

/** The columns of a page, to be added in the order in which its script reads them (lanes.js). */
class PageColumns {
  public:
    /** `digestBytes` is how many bytes of each digest are kept. */
    explicit PageColumns(uint64_t digestBytes) : mDigestBytes(digestBytes) {}

    /** Adds numbers and times stream by stream, because they rise steadily in each. */
    void addPages(const std::vector<FilePage>& pages);
    void addPackets(const std::vector<PacketPoint>& packets);
    /** Adds ranges of times; omits unknown ones. */
    void addRanges(const std::vector<PacketPoint>& packets,
                   std::optional<TimeRange> PacketPoint::*range);
    void addLost(const std::vector<LostPacket>& packets);
    void addGaps(const std::vector<Gap>& gaps);
    void addText(const std::string& text);

    /** Returns the bytes of each column. */
    const std::vector<size_t>& sizes() const { return mSizes; }
    /** Returns the reasons of losses by their numbers. */
    const std::vector<std::string>& reasons() const { return mReasons; }
    /** Returns for each track how many packets ahead the file was read. */
    const std::vector<uint64_t>& leads() const { return mLeads; }
    std::string text() const { return mPacked.text(); }

  private:
    void addPageTimes(const std::map<uint32_t, std::vector<const FilePage*>>& pagesOf);
    void add(std::initializer_list<Column> columns);
    void addDigest(uint64_t digest, Column& digests) const;
    size_t numberOf(const std::string& reason);

    const uint64_t mDigestBytes;
    PackedColumns mPacked;
    std::vector<size_t> mSizes;
    std::vector<uint64_t> mLeads;
    std::vector<std::string> mReasons;
    std::map<std::string, size_t> mReasonNumbers;
};

}  // namespace ogmprobe::timeline
