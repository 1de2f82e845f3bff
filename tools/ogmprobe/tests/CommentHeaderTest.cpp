// SPDX-License-Identifier: Apache-2.0
#include "codecs/CommentHeader.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace ogmprobe {
namespace {

bool isComment(const std::string& text) {
    return isCommentHeader(std::vector<uint8_t>(text.begin(), text.end()));
}

const std::string kHeader("vorbis\2\0\0\0me\1\0\0\0\3\0\0\0A=b\1", 24);

TEST(CommentHeader, IsKnownByItsWholeShape) {
    EXPECT_TRUE(isComment(kHeader));
    EXPECT_TRUE(isComment(std::string("vorbis\0\0\0\0\0\0\0\0\1", 15)));
}

TEST(CommentHeader, IsNotWhatIsCutOrContinued) {
    for (size_t size = 0; size < kHeader.size(); ++size) {
        EXPECT_FALSE(isComment(kHeader.substr(0, size))) << size;
    }
    EXPECT_FALSE(isComment(kHeader + "x"));
}

TEST(CommentHeader, IsNotWhatLacksTheFramingBit) {
    EXPECT_FALSE(isComment(std::string("vorbis\0\0\0\0\0\0\0\0\2", 15)));
}

TEST(CommentHeader, IsNotWhatClaimsMoreThanThereIs) {
    EXPECT_FALSE(isComment(std::string("vorbis\xff\xff\xff\xff\0\0\0\0\1", 15)));
    EXPECT_FALSE(isComment(std::string("vorbis\0\0\0\0\xff\xff\xff\xff\1", 15)));
}

}  // namespace
}  // namespace ogmprobe
