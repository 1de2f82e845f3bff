// SPDX-License-Identifier: Apache-2.0
#include "ledger/Delivery.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <numeric>
#include <string_view>

#include "ledger/CommonSequence.h"

namespace ogmprobe {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

Fingerprint fingerprintOf(std::string_view text) {
    return Fingerprint({reinterpret_cast<const uint8_t*>(text.data()), text.size()});
}

std::vector<FileUnit> unitsOf(std::initializer_list<std::string_view> texts) {
    std::vector<FileUnit> units;
    for (const auto text : texts) {
        units.emplace_back().fingerprint = fingerprintOf(text);
    }
    return units;
}

std::vector<Fingerprint> buffersOf(std::initializer_list<std::string_view> texts) {
    std::vector<Fingerprint> buffers;
    for (const auto text : texts) {
        buffers.push_back(fingerprintOf(text));
    }
    return buffers;
}

/** The buffer of each unit, -1 for none. */
std::vector<int> placesIn(const Delivery& delivery) {
    std::vector<int> places;
    for (const auto& unit : delivery.units) {
        places.push_back(unit.buffer ? static_cast<int>(*unit.buffer) : -1);
    }
    return places;
}

TEST(Delivery, FindsUnitsThatAreLost) {
    const auto delivery =
            deliveryOf(unitsOf({"one", "two", "three", "four"}), buffersOf({"two", "four"}));
    EXPECT_THAT(placesIn(delivery), ElementsAre(-1, 0, -1, 1));
    EXPECT_THAT(delivery.foreign, IsEmpty());
}

TEST(Delivery, DistinguishesRepeatedFromForeignBuffers) {
    const auto delivery = deliveryOf(unitsOf({"one", "two", "three"}),
                                     buffersOf({"one", "two", "one", "noise", "three"}));
    EXPECT_THAT(placesIn(delivery), ElementsAre(0, 1, 4));
    EXPECT_THAT(delivery.repeated, ElementsAre(2U));
    EXPECT_THAT(delivery.foreign, ElementsAre(3U));
}

TEST(Delivery, EqualUnitsAreCountedOnceEach) {
    const auto delivery =
            deliveryOf(unitsOf({"-", "-", "a", "-", "-"}), buffersOf({"-", "a", "-", "-"}));
    EXPECT_THAT(delivery.units[2].buffer, 1U);
    EXPECT_EQ(std::count(delivery.units.begin(), delivery.units.end(), Delivery::Unit{}), 1);
}

TEST(Delivery, UnitsThatAreKnownToBeLostAreLeftOut) {
    auto units = unitsOf({"same", "same"});
    units[0].isLost = true;
    EXPECT_THAT(placesIn(deliveryOf(units, buffersOf({"same"}))), ElementsAre(-1, 0));
}

TEST(Delivery, APacketWithTheSameBeginningIsReportedAsChanged) {
    const auto delivery = deliveryOf(unitsOf({"first", "second", "third"}),
                                     buffersOf({"first and more", "third and more"}));
    EXPECT_THAT(placesIn(delivery), ElementsAre(0, -1, 1));
    EXPECT_TRUE(delivery.units[0].isChanged);
    EXPECT_TRUE(delivery.units[2].isChanged);
}

TEST(Delivery, AKnownTailIsFoundExactly) {
    auto units = unitsOf({"a", "b"});
    units[0].withForeignTail = fingerprintOf("a+tail");
    const auto delivery = deliveryOf(units, buffersOf({"a+tail", "b"}));
    EXPECT_THAT(placesIn(delivery), ElementsAre(0, 1));
    EXPECT_TRUE(delivery.units[0].isChanged);
    EXPECT_FALSE(delivery.units[1].isChanged);
}

TEST(CommonSequence, IsTheLongestOne) {
    const std::vector<uint32_t> a = {1, 2, 3, 1, 2, 2, 1};
    const std::vector<uint32_t> b = {3, 2, 1, 2, 1, 3};
    const auto pairs = commonSequence(a, b);
    EXPECT_EQ(pairs.size(), 4U);
    for (size_t i = 0; i < pairs.size(); ++i) {
        EXPECT_EQ(a[pairs[i].a], b[pairs[i].b]);
        if (i > 0) {
            EXPECT_LT(pairs[i - 1].a, pairs[i].a);
            EXPECT_LT(pairs[i - 1].b, pairs[i].b);
        }
    }
    EXPECT_THAT(commonSequence({}, b), IsEmpty());
    EXPECT_THAT(commonSequence(a, {}), IsEmpty());
}

TEST(CommonSequence, EndsEvenWhereThousandsDiffer) {
    std::vector<uint32_t> a(6000);
    std::iota(a.begin(), a.end(), 0U);
    const std::vector<uint32_t> b(a.rbegin(), a.rend());
    EXPECT_GE(commonSequence(a, b).size(), 1U);
    std::vector<uint32_t> gap(a.begin(), a.begin() + 100);
    gap.insert(gap.end(), a.begin() + 5000, a.end());
    EXPECT_EQ(commonSequence(a, gap).size(), gap.size());
}

}  // namespace
}  // namespace ogmprobe
