// SPDX-License-Identifier: Apache-2.0
#define LOG_TAG "StreamTypesTest"
#include "stream/StreamTypes.h"

#include <gtest/gtest.h>

#include <set>

namespace android::ogm {
namespace {

template <typename Predicate>
std::set<uint32_t> typesOf(Predicate predicate) {
    std::set<uint32_t> types;
    for (uint32_t type = 0; type < 300; ++type) {
        if (predicate(type)) {
            types.insert(type);
        }
    }
    return types;
}

TEST(StreamTypesTest, EachGroupHasItsTypesAndNoOthers) {
    using Types = std::set<uint32_t>;
    EXPECT_EQ(typesOf(isAudioType), (Types{1, 2, 3, 4, 5, 6, 7, 8, 9}));
    EXPECT_EQ(typesOf(isVideoTrackType), (Types{16, 18, 19, 21, 22, 23, 24, 25, 26}));
    EXPECT_EQ(typesOf(isVideoPacketType), (Types{16, 18, 19, 20, 21, 22, 23, 24, 25, 26}));
    EXPECT_EQ(typesOf(isReframedAudioType), (Types{1, 7, 8}));
    EXPECT_EQ(typesOf(isFrameTypedVideo), (Types{18, 19}));
}

}  // namespace
}  // namespace android::ogm
