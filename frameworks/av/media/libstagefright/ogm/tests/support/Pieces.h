// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <algorithm>
#include <optional>
#include <string>
#include <vector>

#include "AccessUnit.h"
#include "Bytes.h"
#include "CutterDriver.h"
#include "Random.h"
#include "ReferenceCutter.h"

/** Splits a stream into pieces, damages it, and feeds it to cutters. */
namespace android::ogm::test {

inline Bytes joinedAll(const std::vector<Bytes>& parts) {
    Bytes all;
    for (const Bytes& part : parts) {
        append(all, part);
    }
    return all;
}

/** Pieces of `size` bytes, and the rest. */
inline std::vector<Bytes> equalPieces(const Bytes& stream, size_t size) {
    std::vector<Bytes> pieces;
    for (size_t start = 0; start < stream.size(); start += size) {
        pieces.push_back(head(tail(stream, start), size));
    }
    return pieces;
}

/** Pieces of `least` to `most` bytes; the last may be smaller. */
inline std::vector<Bytes> randomPieces(const Bytes& stream, uint32_t seed, size_t least,
                                       size_t most) {
    Random random(seed);
    std::vector<Bytes> pieces;
    for (size_t start = 0; start < stream.size(); start += pieces.back().size()) {
        const size_t size = least + random.below(most - least + 1);
        pieces.push_back(head(tail(stream, start), size));
    }
    return pieces;
}

/** Overwrites, removes and inserts bytes; most new bytes are from `temptations`. */
inline Bytes damaged(Bytes stream, const Bytes& temptations, uint32_t seed) {
    Random random(seed);
    const size_t faults = 1 + random.below(40);
    for (size_t i = 0; i < faults; ++i) {
        const size_t position = random.below(stream.size());
        const auto at = stream.begin() + static_cast<ptrdiff_t>(position);
        const uint8_t byte = random.happens(1, 4) ? static_cast<uint8_t>(random.below(256))
                                                  : temptations[random.below(temptations.size())];
        switch (random.below(3)) {
            case 0:
                *at = byte;
                break;
            case 1:
                stream.erase(at);
                break;
            default:
                stream.insert(at, 1 + random.below(5), byte);
                break;
        }
    }
    return stream;
}

/** The time of the n-th piece; all are different. */
inline int64_t timeOfPiece(size_t number) {
    return static_cast<int64_t>(number + 1) * 1000;
}

/** Feeds all pieces; a piece that is refused is lost. */
inline std::vector<AccessUnit> feedAll(CutterDriver& cutter, const std::vector<Bytes>& pieces) {
    std::vector<AccessUnit> all;
    for (size_t i = 0; i < pieces.size(); ++i) {
        const auto units = cutter.feed(pieces[i], timeOfPiece(i));
        all.insert(all.end(), units.begin(), units.end());
    }
    return all;
}

inline std::vector<AccessUnit> feedAll(ReferenceCutter& cutter, const std::vector<Bytes>& pieces) {
    std::vector<AccessUnit> all;
    for (size_t i = 0; i < pieces.size(); ++i) {
        const auto units = cutter.feed(pieces[i], timeOfPiece(i)).units;
        all.insert(all.end(), units.begin(), units.end());
    }
    return all;
}

/**
 * Feeds both, up to a piece that would end the process or never end. Returns the first difference;
 * nothing if there is none.
 */
inline std::optional<std::string> feedSound(CutterDriver& cutter, ReferenceCutter& reference,
                                            const std::vector<Bytes>& pieces) {
    for (size_t i = 0; i < pieces.size(); ++i) {
        const auto expected = reference.feed(pieces[i], timeOfPiece(i));
        if (expected.fatal) {
            return std::nullopt;
        }
        const bool accepted = cutter.append(pieces[i], timeOfPiece(i));
        if (accepted != expected.accepted) {
            return "whether piece " + std::to_string(i) + " is taken";
        }
        if (accepted && cutter.cut() != expected.units) {
            return "the frames of piece " + std::to_string(i);
        }
        if (cutter.buffered() != reference.buffered()) {
            return "the bytes left after piece " + std::to_string(i);
        }
        if (cutter.ranges() != reference.ranges()) {
            return "the ranges left after piece " + std::to_string(i);
        }
    }
    return std::nullopt;
}

}  // namespace android::ogm::test
