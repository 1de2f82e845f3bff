// SPDX-License-Identifier: Apache-2.0
#include "compare/Difference.h"

#include <fmt/core.h>

#include <algorithm>
#include <iterator>

#include "text/Hex.h"
#include "text/Json.h"

namespace ogmprobe {
namespace {

using nlohmann::ordered_json;

/** Adds a difference like the given one for each member that has not the same value in both. */
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

ordered_json containerOf(const FileOpened& opened) {
    return {{"extractor", opened.extractor},
            {"mime", opened.mime},
            {"duration_us", orNull(opened.durationUs)},
            {"track_count", opened.trackCount}};
}

/** The members that do not follow from others. */
ordered_json formatOf(const TrackDescription& track) {
    ordered_json format = toJson(track);
    for (const char* derived : {"index", "kind", "codec"}) {
        format.erase(derived);
    }
    format["esds"] = track.esds ? ordered_json(hexText(*track.esds)) : ordered_json(nullptr);
    return format;
}

ordered_json toJson(const ComparedPacket& packet) {
    return {{"time_us", packet.timeUs},
            {"sync", packet.isSync},
            {"size", packet.size},
            {"digest", fmt::format("{:016x}", packet.digest)}};
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

/** The first place at which the lists differ. */
template <typename T>
std::optional<uint64_t> firstDifference(const std::vector<T>& a, const std::vector<T>& b) {
    const auto [inA, inB] = std::mismatch(a.begin(), a.end(), b.begin(), b.end());
    if (inA == a.end() && inB == b.end()) {
        return std::nullopt;
    }
    return inA - a.begin();
}

/** Compares the tracks of an index, each of which may be missing. */
class TrackPair {
  public:
    TrackPair(const PlayedFile& a, const PlayedFile& b, uint64_t index)
        : mIndex(index), mA(trackOf(a, index)), mB(trackOf(b, index)) {}

    void addFormats(std::vector<Difference>& differences) const {
        Difference difference = base(DifferenceKind::kTrack);
        if (mA != nullptr && mB != nullptr) {
            addMembers(difference, formatOf(mA->description), formatOf(mB->description),
                       differences);
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
