// SPDX-License-Identifier: Apache-2.0
#include "compare/Difference.h"

#include <fmt/core.h>
#include <media/NdkMediaFormat.h>
#include <media/NdkMediaFormatZor.h>

#include <algorithm>
#include <array>
#include <iterator>
#include <map>
#include <tuple>
#include <utility>

#include "plugin/TrackJson.h"
#include "text/Hex.h"
#include "text/Json.h"
#include "text/TimeArithmetic.h"

namespace ogmprobe {
namespace {

using nlohmann::ordered_json;

/** Adds a difference like the given one for each member whose values differ. */
void addMembers(const Difference& like, const ordered_json& a, const ordered_json& b,
                std::vector<Difference>& differences) {
    for (const auto& [field, value] : a.items()) {
        if (value != b[field]) {
            Difference difference = like;
            difference.field = field;
            difference.a = value;
            difference.b = b[field];
            differences.push_back(std::move(difference));
        }
    }
}

/** Returns whether entries of this name are compared as separate members. */
bool isCompared(const std::string& name) {
    const std::array<const char*, 9> known = {
            AMEDIAFORMAT_KEY_MIME,          AMEDIAFORMAT_KEY_DURATION,
            AMEDIAFORMAT_KEY_WIDTH,         AMEDIAFORMAT_KEY_HEIGHT,
            AMEDIAFORMAT_KEY_FRAME_RATE,    AMEDIAFORMAT_KEY_SAMPLE_RATE,
            AMEDIAFORMAT_KEY_CHANNEL_COUNT, AMEDIAFORMAT_KEY_MPEG_AUD_LAYER,
            AMEDIAFORMAT_KEY_ESDS};
    return std::any_of(known.begin(), known.end(),
                       [&name](const char* key) { return name == key; });
}

std::map<std::string, std::string> otherEntries(const std::vector<FormatEntry>& entries) {
    std::map<std::string, std::string> others;
    for (const FormatEntry& entry : entries) {
        if (!isCompared(entry.name)) {
            others[entry.name] = entry.value;
        }
    }
    return others;
}

/** The same for all other format entries, whatever their names. */
void addEntries(const Difference& like, const std::vector<FormatEntry>& entriesOfA,
                const std::vector<FormatEntry>& entriesOfB, std::vector<Difference>& differences) {
    const auto a = otherEntries(entriesOfA);
    const auto b = otherEntries(entriesOfB);
    auto names = a;
    names.insert(b.begin(), b.end());
    const auto valueIn = [](const std::map<std::string, std::string>& entries,
                            const std::string& name) {
        const auto found = entries.find(name);
        return found == entries.end() ? ordered_json(nullptr) : ordered_json(found->second);
    };
    for (const auto& [name, value] : names) {
        Difference difference = like;
        difference.field = std::string(kFormatField) + name;
        difference.a = valueIn(a, name);
        difference.b = valueIn(b, name);
        if (difference.a != difference.b) {
            differences.push_back(std::move(difference));
        }
    }
}

ordered_json containerOf(const FileOpened& opened) {
    return {{"extractor", opened.extractor},
            {"mime", opened.mime},
            {"duration_us", orNull(opened.durationUs)},
            {"track_count", opened.trackCount}};
}

/** The members that do not follow from others. */
ordered_json formatOf(const TrackDescription& track) {
    ordered_json format = toJson(track);
    for (const char* derived : {"index", "kind", "codec", "format"}) {
        format.erase(derived);
    }
    format["esds"] = track.esds ? ordered_json(hexText(*track.esds)) : ordered_json(nullptr);
    return format;
}

ordered_json toJson(const ComparedPacket& packet) {
    return {{"time_us", packet.timeUs},
            {"sync", packet.isSync},
            {"size", packet.size},
            {"digest", fmt::format("{:016x}", packet.digest)},
            {"entries", packet.entriesText()}};
}

ordered_json messageOf(const PlayedFile& file) {
    return file.failure ? ordered_json(file.failure->message) : ordered_json(nullptr);
}

const ComparedTrack* trackOf(const PlayedFile& file, uint64_t index) {
    const auto found = file.tracks.find(index);
    return found == file.tracks.end() ? nullptr : &found->second;
}

std::vector<uint64_t> tracksOf(const PlayedFile& a, const PlayedFile& b) {
    std::vector<uint64_t> indices;
    for (const auto& [index, track] : a.tracks) {
        indices.push_back(index);
    }
    for (const auto& [index, track] : b.tracks) {
        if (trackOf(a, index) == nullptr) {
            indices.push_back(index);
        }
    }
    return indices;
}

const std::vector<ComparedPacket>& packetsOf(const ComparedTrack* track) {
    static const std::vector<ComparedPacket> kNone;
    return track != nullptr ? track->packets : kNone;
}

/** Returns the first place at which the lists differ. */
template <typename T>
std::optional<uint64_t> firstDifference(const std::vector<T>& a, const std::vector<T>& b) {
    const auto [inA, inB] = std::mismatch(a.begin(), a.end(), b.begin(), b.end());
    if (inA == a.end() && inB == b.end()) {
        return std::nullopt;
    }
    return inA - a.begin();
}

/** Returns the difference of times, if it is the same for all packets and nothing else differs. */
std::optional<int64_t> shiftFrom(uint64_t first, const std::vector<ComparedPacket>& a,
                                 const std::vector<ComparedPacket>& b) {
    const int64_t shiftUs = timeDifferenceUs(b[first].timeUs, a[first].timeUs);
    bool isShift = shiftUs != 0 && a.size() == b.size() && first + 1 < a.size();
    for (size_t i = first; isShift && i < a.size(); ++i) {
        isShift =
                timeDifferenceUs(b[i].timeUs, a[i].timeUs) == shiftUs && a[i].hasSameContent(b[i]);
    }
    return isShift ? std::optional(shiftUs) : std::nullopt;
}

/** Compares the two tracks with one index; each may be missing. */
class TrackPair {
  public:
    TrackPair(const PlayedFile& a, const PlayedFile& b, uint64_t index)
        : mIndex(index), mA(trackOf(a, index)), mB(trackOf(b, index)) {}

    void addFormats(std::vector<Difference>& differences) const {
        Difference difference = base(DifferenceKind::kTrack);
        if (mA != nullptr && mB != nullptr) {
            addMembers(difference, formatOf(mA->description), formatOf(mB->description),
                       differences);
            addEntries(difference, mA->description.entries, mB->description.entries, differences);
            return;
        }
        const auto mimeOf = [](const ComparedTrack* track) {
            return track != nullptr ? ordered_json(track->description.mime) : ordered_json(nullptr);
        };
        difference.a = mimeOf(mA);
        difference.b = mimeOf(mB);
        differences.push_back(std::move(difference));
    }

    void addFirstPacket(std::vector<Difference>& differences) const {
        const auto& a = packetsOf(mA);
        const auto& b = packetsOf(mB);
        const auto number = firstDifference(a, b);
        if (!number || mA == nullptr || mB == nullptr) {
            return;
        }
        Difference difference = base(DifferenceKind::kPacket);
        difference.number = number;
        if (*number < a.size() && *number < b.size()) {
            difference.timeUs = std::min(a[*number].timeUs, b[*number].timeUs);
            difference.shiftUs = shiftFrom(*number, a, b);
            std::vector<Difference> members;
            addMembers(difference, toJson(a[*number]), toJson(b[*number]), members);
            differences.push_back(std::move(members.front()));
            return;
        }
        const bool inA = *number < a.size();
        const ComparedPacket& packet = inA ? a[*number] : b[*number];
        difference.timeUs = packet.timeUs;
        (inA ? difference.a : difference.b) = toJson(packet);
        differences.push_back(std::move(difference));
    }

    void addEnd(std::vector<Difference>& differences) const {
        if (mA == nullptr || mB == nullptr || mA->failure == mB->failure) {
            return;
        }
        Difference difference = base(DifferenceKind::kTrackEnd);
        difference.a = orNull(mA->failure);
        difference.b = orNull(mB->failure);
        differences.push_back(std::move(difference));
    }

    TrackComparison summary() const {
        auto a = packetsOf(mA);
        auto b = packetsOf(mB);
        TrackComparison comparison{
                mIndex, mimes(), a.size(), b.size(), 0, 0, firstDifference(a, b)};
        std::sort(a.begin(), a.end());
        std::sort(b.begin(), b.end());
        std::vector<ComparedPacket> only;
        std::set_difference(a.begin(), a.end(), b.begin(), b.end(), std::back_inserter(only));
        comparison.onlyInA = only.size();
        comparison.onlyInB = b.size() - (a.size() - only.size());
        return comparison;
    }

  private:
    Difference base(DifferenceKind kind) const {
        Difference difference;
        difference.kind = kind;
        difference.track = mIndex;
        return difference;
    }

    std::string mimes() const { return (mA != nullptr ? mA : mB)->description.mime; }

    const uint64_t mIndex;
    const ComparedTrack* const mA;
    const ComparedTrack* const mB;
};

void addOpening(const PlayedFile& a, const PlayedFile& b, std::vector<Difference>& differences) {
    Difference difference;
    if (a.opened && b.opened) {
        difference.kind = DifferenceKind::kContainer;
        addMembers(difference, containerOf(*a.opened), containerOf(*b.opened), differences);
        addEntries(difference, a.opened->entries, b.opened->entries, differences);
        return;
    }
    difference.a = a.opened ? ordered_json(nullptr) : messageOf(a);
    difference.b = b.opened ? ordered_json(nullptr) : messageOf(b);
    if (difference.a != difference.b) {
        differences.push_back(std::move(difference));
    }
}

void addEnd(const PlayedFile& a, const PlayedFile& b, std::vector<Difference>& differences) {
    Difference difference;
    difference.kind = DifferenceKind::kEnd;
    difference.a = messageOf(a);
    difference.b = messageOf(b);
    if (a.opened && b.opened && difference.a != difference.b) {
        differences.push_back(std::move(difference));
    }
}

using ReadPlace = std::vector<SourceRead>::const_iterator;

/** Returns read number `distance` of the run at `place`, or the first read of the next run. */
ordered_json readText(ReadPlace place, ReadPlace end, uint64_t distance) {
    if (place != end && distance >= place->count) {
        ++place;
        distance = 0;
    }
    if (place == end) {
        return nullptr;
    }
    const auto offset = static_cast<int64_t>(static_cast<uint64_t>(place->offset) + distance);
    return fmt::format("{} bytes at {}, which returned {}", place->size, offset, place->result);
}

ordered_json seekJson(const SeekLanded& seek) {
    auto landings = ordered_json::array();
    for (const Landing& landing : seek.landings) {
        landings.push_back({{"track", landing.track},
                            {"time_us", orNull(landing.timeUs)},
                            {"sync", landing.isSync}});
    }
    return {{"target_us", seek.targetUs},
            {"reads", seek.reads},
            {"bytes", seek.bytes},
            {"landings", std::move(landings)}};
}

}  // namespace

std::vector<Difference> differencesBetween(const PlayedFile& a, const PlayedFile& b) {
    std::vector<Difference> differences;
    addOpening(a, b, differences);
    if (!a.opened || !b.opened) {
        return differences;
    }
    std::vector<Difference> packets;
    std::vector<Difference> ends;
    for (const uint64_t index : tracksOf(a, b)) {
        const TrackPair pair(a, b, index);
        pair.addFormats(differences);
        pair.addFirstPacket(packets);
        pair.addEnd(ends);
    }
    std::stable_sort(packets.begin(), packets.end(),
                     [](const Difference& x, const Difference& y) { return x.timeUs < y.timeUs; });
    addEnd(a, b, ends);
    for (auto* more : {&packets, &ends}) {
        std::move(more->begin(), more->end(), std::back_inserter(differences));
    }
    return differences;
}

std::optional<Difference> firstReadDifference(const PlayedFile& a, const PlayedFile& b) {
    const auto isSame = [](const SourceRead& x, const SourceRead& y) {
        return std::tie(x.offset, x.size, x.result, x.count) ==
               std::tie(y.offset, y.size, y.result, y.count);
    };
    const auto [inA, inB] =
            std::mismatch(a.reads.begin(), a.reads.end(), b.reads.begin(), b.reads.end(), isSame);
    if (inA == a.reads.end() && inB == b.reads.end()) {
        return std::nullopt;
    }
    Difference difference;
    difference.kind = DifferenceKind::kRead;
    // Searches that begin at the same place differ where the shorter one ends.
    uint64_t equalReads = 0;
    if (inA != a.reads.end() && inB != b.reads.end() && inA->offset == inB->offset &&
        inA->size == inB->size && inA->result == inB->result) {
        equalReads = std::min(inA->count, inB->count);
    }
    difference.number = equalReads;
    for (auto read = a.reads.begin(); read != inA; ++read) {
        *difference.number += read->count;
    }
    difference.a = readText(inA, a.reads.end(), equalReads);
    difference.b = readText(inB, b.reads.end(), equalReads);
    return difference;
}

std::optional<Difference> firstSeekDifference(const PlayedFile& a, const PlayedFile& b) {
    const size_t most = std::max(a.seeks.size(), b.seeks.size());
    for (size_t i = 0; i < most; ++i) {
        const ordered_json seekOfA = i < a.seeks.size() ? seekJson(a.seeks[i]) : ordered_json();
        const ordered_json seekOfB = i < b.seeks.size() ? seekJson(b.seeks[i]) : ordered_json();
        if (seekOfA != seekOfB) {
            Difference difference;
            difference.kind = DifferenceKind::kSeek;
            difference.number = i;
            difference.timeUs = (i < a.seeks.size() ? a : b).seeks[i].targetUs;
            difference.a = seekOfA;
            difference.b = seekOfB;
            return difference;
        }
    }
    return std::nullopt;
}

std::optional<uint64_t> firstLogDifference(const PlayedFile& a, const PlayedFile& b) {
    return firstDifference(a.logDigests, b.logDigests);
}

std::vector<TrackComparison> compareTracks(const PlayedFile& a, const PlayedFile& b) {
    std::vector<TrackComparison> comparisons;
    for (const uint64_t index : tracksOf(a, b)) {
        comparisons.push_back(TrackPair(a, b, index).summary());
    }
    return comparisons;
}

}  // namespace ogmprobe
