// SPDX-License-Identifier: Apache-2.0
#include "codecs/Mpeg4Video.h"

#include <gtest/gtest.h>

#include <vector>

#include "records/Digest.h"

namespace ogmprobe {
namespace {

using Bytes = std::vector<uint8_t>;

size_t layerSize(const Bytes& stream) {
    return videoObjectLayer(stream).size();
}

TEST(VideoObjectLayer, ReachesFromItsStartCodeToTheEnd) {
    EXPECT_EQ(layerSize({0, 0, 1, 0x00, 0, 0, 1, 0x20, 7, 8}), 6U);
    EXPECT_EQ(layerSize({0, 0, 0, 1, 0x2f}), 4U);
}

TEST(VideoObjectLayer, IsNotLookedForAfterAPicture) {
    EXPECT_EQ(layerSize({0, 0, 1, 0xb6, 9, 0, 0, 1, 0x20, 7}), 0U);
}

TEST(VideoObjectLayer, IsMissingWithoutAWholeStartCode) {
    EXPECT_EQ(layerSize({}), 0U);
    EXPECT_EQ(layerSize({0, 0, 1}), 0U);
    EXPECT_EQ(layerSize({0, 0, 1, 0x1f, 0, 0, 1, 0x30, 0, 0, 1}), 0U);
}

TEST(Digest, MatchesThePublishedValues) {
    const auto digest = [](std::string_view text) {
        return fnv1a64(Bytes(text.begin(), text.end()));
    };
    EXPECT_EQ(digest(""), 0xcbf29ce484222325);
    EXPECT_EQ(digest("a"), 0xaf63dc4c8601ec8c);
    EXPECT_EQ(digest("foobar"), 0x85944171f73967e8);
}

}  // namespace
}  // namespace ogmprobe
