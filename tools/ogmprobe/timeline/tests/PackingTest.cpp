// SPDX-License-Identifier: Apache-2.0
#include "Packing.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "UnpackedPage.h"

namespace ogmprobe::timeline::test {
namespace {

using testing::ElementsAre;

TEST(Column, HasSevenBitsAByte) {
    Column column;
    column.add(0);
    column.add(127);
    column.add(128);
    column.add(16384);
    EXPECT_THAT(column.bytes(), ElementsAre(0, 127, 0x80, 1, 0x80, 0x80, 1));
}

TEST(Column, KeepsSmallNumbersOfEitherSignShort) {
    Column column;
    column.addSigned(0);
    column.addSigned(-1);
    column.addSigned(1);
    column.addSigned(-64);
    column.addSigned(64);
    EXPECT_THAT(column.bytes(), ElementsAre(0, 1, 2, 127, 0x80, 1));
}

TEST(SteadyColumn, HasZerosForSteadilyRisingNumbers) {
    SteadyColumn column;
    for (const int64_t number : {5, 15, 25, 35}) {
        column.add(number);
    }
    EXPECT_THAT(column.column().bytes(), ElementsAre(10, 10, 0, 0));
}

TEST(PackedColumns, UnpackToTheSameNumbers) {
    for (const size_t count : {0, 1, 2, 3, 1000}) {
        Column column;
        for (size_t i = 0; i < count; ++i) {
            column.addByte(static_cast<uint8_t>(i * i));
        }
        PackedColumns packed;
        EXPECT_EQ(packed.add(column), count);
        EXPECT_EQ(packed.text().size() % 4, 0U);
        EXPECT_EQ(inflated(fromBase64(packed.text()), count), column.bytes());
    }
}

}  // namespace
}  // namespace ogmprobe::timeline::test
