// SPDX-License-Identifier: Apache-2.0
#include <fmt/core.h>

#include <algorithm>
#include <cmath>
#include <map>
#include <string_view>
#include <vector>

#include "Packing.h"
#include "Page.h"
#include "text/Json.h"

namespace ogmprobe::timeline {
namespace {

using nlohmann::ordered_json;

// Nothing makes digests shorter, so those of many packets are cut for the page's sake.
constexpr uint64_t kDigestBytesOfAPage = 500000;
constexpr uint64_t kLeastDigestBytes = 2;

// Bits of a packet's kind beside those of its type.
constexpr uint8_t kSyncBit = 4;

uint64_t digestBytes(const Timeline& timeline) {
    uint64_t packets = 1;
    for (const Lane& lane : timeline.lanes) {
        packets += lane.packets.size();
    }
    return std::clamp(kDigestBytesOfAPage / packets, kLeastDigestBytes, sizeof(uint64_t));
}

/**
 * How much further the file was read for each packet than for the one before, less the size of the
 * packet `lead` behind it: a plug-in that keeps so many packets ready reads that one.
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

/** The lead that makes the column shortest. */
uint64_t leadOf(const std::vector<PacketPoint>& packets) {
    constexpr uint64_t kMostLead = 16;
    constexpr size_t kSample = 2000;
    const std::vector<PacketPoint> sample(
            packets.begin(),
            packets.begin() + static_cast<ptrdiff_t>(std::min(packets.size(), kSample)));
    uint64_t best = sample.size();
    size_t least = positionsOf(sample, best).bytes().size();
    for (uint64_t lead = 0; lead <= kMostLead; ++lead) {
        if (const size_t size = positionsOf(sample, lead).bytes().size(); size < least) {
            least = size;
            best = lead;
        }
    }
    return best == sample.size() ? packets.size() : best;
}

/** Columns in the order in which the page's script takes them. */
class DataColumns {
  public:
    explicit DataColumns(uint64_t digestBytes) : mDigestBytes(digestBytes) {}

    /** Numbers and times stream by stream, for in each they are steady. */
    void addPages(const std::vector<FilePage>& pages) {
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

    void addPackets(const std::vector<PacketPoint>& packets) {
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

    /** Ranges of times; what is not known has no range. */
    template <typename RangeOf>
    void addRanges(const std::vector<PacketPoint>& packets, const RangeOf& rangeOf) {
        Column known;
        SteadyColumn least;
        Column widths;
        TimeRange last;
        for (const PacketPoint& packet : packets) {
            const std::optional<TimeRange> range = rangeOf(packet);
            last = range.value_or(last);
            known.addByte(range ? 1 : 0);
            least.add(last.leastUs);
            widths.add(range ? static_cast<uint64_t>(last.mostUs) -
                                       static_cast<uint64_t>(last.leastUs)
                             : 0);
        }
        add({known, least.column(), widths});
    }

    void addLost(const std::vector<LostPacket>& packets) {
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

    void addGaps(const std::vector<Gap>& gaps) {
        SteadyColumn begins;
        SteadyColumn ends;
        for (const Gap& gap : gaps) {
            begins.add(std::llround(gap.fromUs));
            ends.add(std::llround(gap.toUs));
        }
        add({begins.column(), ends.column()});
    }

    void addText(const std::string& text) {
        Column bytes;
        for (const char character : text) {
            bytes.addByte(static_cast<uint8_t>(character));
        }
        add({bytes});
    }

    const std::vector<size_t>& sizes() const { return mSizes; }
    const std::vector<std::string>& reasons() const { return mReasons; }
    std::string text() const { return mPacked.text(); }

    const std::vector<uint64_t>& leads() const { return mLeads; }

  private:
    void addPageTimes(const std::map<uint32_t, std::vector<const FilePage*>>& pagesOf) {
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

    void add(std::initializer_list<Column> columns) {
        for (const Column& column : columns) {
            mSizes.push_back(mPacked.add(column));
        }
    }

    void addDigest(uint64_t digest, Column& digests) const {
        for (uint64_t i = 0; i < mDigestBytes; ++i) {
            digests.addByte(static_cast<uint8_t>(digest >> (56 - 8 * i)));
        }
    }

    size_t numberOf(const std::string& reason) {
        const auto [entry, isNew] = mReasonNumbers.emplace(reason, mReasons.size());
        if (isNew) {
            mReasons.push_back(reason);
        }
        return entry->second;
    }

    uint64_t mDigestBytes;
    std::vector<uint64_t> mLeads;
    PackedColumns mPacked;
    std::vector<size_t> mSizes;
    std::vector<std::string> mReasons;
    std::map<std::string, size_t> mReasonNumbers;
};

ordered_json laneJson(const Chart& chart, size_t index, uint64_t lead) {
    const Lane& lane = chart.timeline.lanes[index];
    return {{"track", lane.track.index},
            {"kind", kindName(lane.track.kind)},
            {"codec", lane.track.codec.name},
            {"colour", chart.trackClasses[index]},
            {"noun", lane.countsFrames ? "frame" : "packet"},
            {"typeNames", typeNames(lane.track.mime)},
            {"marksSyncs", marksSyncs(lane)},
            {"usualUs", chart.timings[index].packetUs},
            {"packets", lane.packets.size()},
            {"lead", lead},
            {"lost", lane.lost.size()},
            {"gaps", chart.timings[index].gaps.size()}};
}

ordered_json partsJson(const ReadCost& cost) {
    auto parts = ordered_json::array();
    for (const auto& [begin, end] : cost.extents.parts()) {
        parts.push_back({begin, end});
    }
    return parts;
}

ordered_json seeksJson(const std::vector<Seek>& seeks) {
    auto list = ordered_json::array();
    for (const Seek& seek : seeks) {
        list.push_back({{"targetUs", seek.targetUs},
                        {"landedUs", orNull(seek.landedUs)},
                        {"sync", seek.isSync},
                        {"reads", seek.cost.reads},
                        {"bytes", seek.cost.bytes},
                        {"parts", partsJson(seek.cost)}});
    }
    return list;
}

ordered_json findingsJson(const std::vector<ShownFinding>& findings) {
    auto list = ordered_json::array();
    for (const ShownFinding& finding : findings) {
        const auto& span = finding.span;
        list.push_back({{"id", finding.id},
                        {"text", finding.text},
                        {"line", finding.line},
                        {"usual", finding.usual},
                        {"lane", orNull(finding.lane)},
                        {"refused", orNull(finding.refused)},
                        {"offset", orNull(finding.offset)},
                        {"fromUs", span ? ordered_json(span->firstUs) : ordered_json(nullptr)},
                        {"toUs", span ? ordered_json(span->lastUs) : ordered_json(nullptr)}});
    }
    return list;
}

ordered_json refusedJson(const std::vector<RefusedStream>& streams) {
    auto list = ordered_json::array();
    for (const RefusedStream& stream : streams) {
        list.push_back({{"name", stream.name},
                        {"reason", stream.reason},
                        {"packets", stream.packets.size()}});
    }
    return list;
}

/** Texts, each with the page that it belongs to. */
std::string linesText(const std::vector<PageLine>& lines) {
    std::map<std::string_view, size_t> numbers;
    auto texts = ordered_json::array();
    auto places = ordered_json::array();
    for (const PageLine& line : lines) {
        const auto [entry, isNew] = numbers.emplace(line.text, texts.size());
        if (isNew) {
            texts.push_back(line.text);
        }
        places.push_back(line.page);
        places.push_back(entry->second);
    }
    return toLine({{"texts", std::move(texts)}, {"places", std::move(places)}});
}

/** A "<" could end the element that the data stands in; in JSON it occurs in strings alone. */
std::string forScriptElement(const std::string& json) {
    std::string result;
    for (const char character : json) {
        if (character == '<') {
            result += "\\u003c";
        } else {
            result += character;
        }
    }
    return result;
}

DataColumns columnsOf(const Chart& chart) {
    const Timeline& timeline = chart.timeline;
    DataColumns columns(digestBytes(timeline));
    columns.addPages(timeline.pages);
    for (size_t i = 0; i < timeline.lanes.size(); ++i) {
        const auto& packets = timeline.lanes[i].packets;
        columns.addPackets(packets);
        columns.addRanges(packets, [](const PacketPoint& packet) { return packet.pageUs; });
        columns.addRanges(packets, [](const PacketPoint& packet) { return packet.behindVideoUs; });
        columns.addLost(timeline.lanes[i].lost);
        columns.addGaps(chart.timings[i].gaps);
    }
    for (const RefusedStream& stream : timeline.refused) {
        columns.addLost(stream.packets);
    }
    columns.addText(linesText(timeline.lines));
    return columns;
}

}  // namespace

PageData pageData(const Chart& chart) {
    const Timeline& timeline = chart.timeline;
    const DataColumns columns = columnsOf(chart);
    const auto steps = tickStepsUs();
    ordered_json json = {{"axis",
                          {{"startUs", chart.axis.startUs()},
                           {"lengthUs", chart.axis.lengthUs()},
                           {"stepsUs", std::vector<double>(steps.begin(), steps.end())}}},
                         {"fileSize", timeline.file.sizeBytes},
                         {"pages", timeline.pages.size()},
                         {"digestBytes", digestBytes(timeline)},
                         {"reasons", columns.reasons()},
                         {"opening", partsJson(timeline.opening)},
                         {"seeks", seeksJson(timeline.seeks)},
                         {"findings", findingsJson(timeline.findings)},
                         {"refused", refusedJson(timeline.refused)},
                         {"columns", columns.sizes()}};
    auto lanes = ordered_json::array();
    for (size_t i = 0; i < timeline.lanes.size(); ++i) {
        lanes.push_back(laneJson(chart, i, columns.leads()[i]));
    }
    json["lanes"] = std::move(lanes);
    return {forScriptElement(toLine(json)), columns.text()};
}

}  // namespace ogmprobe::timeline
