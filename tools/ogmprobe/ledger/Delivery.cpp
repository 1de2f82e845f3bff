// SPDX-License-Identifier: Apache-2.0
#include "ledger/Delivery.h"

#include <algorithm>
#include <utility>

#include "ledger/CommonSequence.h"

namespace ogmprobe {
namespace {

/** How far ahead to search for a buffer that only begins like the unit. */
constexpr size_t kLookAhead = 16;

using Key = std::pair<uint64_t, uint64_t>;

Key keyOf(const Fingerprint& fingerprint) {
    return {fingerprint.digest, fingerprint.size};
}

/** Returns the key of the buffer that the unit should become. */
Key keyOf(const FileUnit& unit) {
    return keyOf(unit.withForeignTail.value_or(unit.fingerprint));
}

/** The elements of one side as numbers, with their places. */
struct NumberedSide {
    std::vector<size_t> places;
    std::vector<uint32_t> numbers;

    void add(size_t place, uint32_t number) {
        places.push_back(place);
        numbers.push_back(number);
    }
};

class BufferComparison {
  public:
    BufferComparison(const std::vector<FileUnit>& units, const std::vector<Fingerprint>& buffers)
        : mUnits(units), mBuffers(buffers) {
        mDelivery.units.resize(units.size());
    }

    Delivery compare() {
        numberUnits();
        size_t unit = 0;
        size_t buffer = 0;
        for (const Pairing& pair : samePairs()) {
            compareRest(unit, pair.a, buffer, pair.b);
            mDelivery.units[pair.a] = {pair.b, mUnits[pair.a].withForeignTail.has_value()};
            unit = pair.a + 1;
            buffer = pair.b + 1;
        }
        compareRest(unit, mUnits.size(), buffer, mBuffers.size());
        return std::move(mDelivery);
    }

  private:
    void numberUnits() {
        for (const FileUnit& unit : mUnits) {
            if (!unit.isLost) {
                mKeys.push_back(keyOf(unit));
            }
        }
        std::sort(mKeys.begin(), mKeys.end());
        mKeys.erase(std::unique(mKeys.begin(), mKeys.end()), mKeys.end());
    }

    std::optional<uint32_t> numberOf(const Key& key) const {
        const auto found = std::lower_bound(mKeys.begin(), mKeys.end(), key);
        if (found == mKeys.end() || *found != key) {
            return std::nullopt;
        }
        return static_cast<uint32_t>(found - mKeys.begin());
    }

    /** Leaves out elements that only one side has, because they would slow the comparison down. */
    std::vector<Pairing> samePairs() const {
        NumberedSide buffers;
        std::vector<bool> isInBuffers(mKeys.size());
        for (size_t i = 0; i < mBuffers.size(); ++i) {
            if (const auto number = numberOf(keyOf(mBuffers[i]))) {
                buffers.add(i, *number);
                isInBuffers[*number] = true;
            }
        }
        NumberedSide units;
        for (size_t i = 0; i < mUnits.size(); ++i) {
            const auto number = mUnits[i].isLost ? std::nullopt : numberOf(keyOf(mUnits[i]));
            if (number && isInBuffers[*number]) {
                units.add(i, *number);
            }
        }
        std::vector<Pairing> pairs = commonSequence(units.numbers, buffers.numbers);
        for (Pairing& pair : pairs) {
            pair = {units.places[pair.a], buffers.places[pair.b]};
        }
        return pairs;
    }

    /** Between two pairs, matches buffers that begin like a unit. */
    void compareRest(size_t unit, size_t endUnit, size_t buffer, size_t endBuffer) {
        for (; buffer < endBuffer; ++buffer) {
            const auto similar = similarUnit(unit, endUnit, mBuffers[buffer]);
            if (similar) {
                mDelivery.units[*similar] = {buffer, true};
                unit = *similar + 1;
            } else if (numberOf(keyOf(mBuffers[buffer]))) {
                mDelivery.repeated.push_back(buffer);
            } else {
                mDelivery.foreign.push_back(buffer);
            }
        }
    }

    std::optional<size_t> similarUnit(size_t from, size_t end, const Fingerprint& buffer) const {
        for (size_t i = from; i < std::min(end, from + kLookAhead); ++i) {
            if (!mUnits[i].isLost && mUnits[i].fingerprint.hasSameBeginning(buffer)) {
                return i;
            }
        }
        return std::nullopt;
    }

    const std::vector<FileUnit>& mUnits;
    const std::vector<Fingerprint>& mBuffers;
    /** Of the units, in order; the place of each is its number. */
    std::vector<Key> mKeys;
    Delivery mDelivery;
};

}  // namespace

Delivery deliveryOf(const std::vector<FileUnit>& units, const std::vector<Fingerprint>& buffers) {
    return BufferComparison(units, buffers).compare();
}

}  // namespace ogmprobe
