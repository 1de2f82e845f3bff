// SPDX-License-Identifier: Apache-2.0
#include "packet/PassingPackets.h"

#include <gtest/gtest.h>

namespace android::ogm::test::passing_packets_test {
namespace {

TEST(PassingPacketsTest, AreTakenAndDroppedInTheSameMemory) {
    PassingPackets passing;
    ByteBuffer piece = passing.makePiece(1000);
    const uint8_t* const place = piece.data();
    EXPECT_EQ(piece.size(), 1000U);
    passing.appendData(&piece, true, true);
    passing.giveBack(&piece);
    ByteBuffer next = passing.makePiece(10);
    EXPECT_EQ(next.size(), 10U);
    EXPECT_EQ(next.data(), place);
}

TEST(PassingPacketsTest, APieceOfNoBytesHasAnAddressToReadTo) {
    PassingPackets passing;
    EXPECT_NE(passing.makePiece(0).data(), nullptr);
}

}  // namespace
}  // namespace android::ogm::test::passing_packets_test
