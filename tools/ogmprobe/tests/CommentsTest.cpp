// SPDX-License-Identifier: Apache-2.0
#include "codecs/Comments.h"

#include <gtest/gtest.h>

#include "codecs/LittleEndian.h"

namespace ogmprobe {
namespace {

std::vector<uint8_t> header(const std::vector<std::string>& entries) {
    LittleEndian bytes;
    bytes.text("\3vorbis").u32(6).text("a name").u32(entries.size());
    for (const std::string& entry : entries) {
        bytes.u32(entry.size()).text(entry);
    }
    return bytes.bytes();
}

TEST(Comments, HaveTheVendorAndEachEntry) {
    const auto comments = parseComments(header({"TITLE=A=B", "no entry", "language=de"}));
    ASSERT_TRUE(comments);
    EXPECT_EQ(comments->vendor, "a name");
    ASSERT_EQ(comments->entries.size(), 2U);
    EXPECT_EQ(comments->entries[0].name, "TITLE");
    EXPECT_EQ(comments->entries[0].value, "A=B");
    EXPECT_EQ(comments->entries[1].value, "de");
}

TEST(Comments, AreWhatThereIsOfAHeaderThatIsCutOff) {
    auto bytes = header({"TITLE=film"});
    bytes.resize(bytes.size() - 2);
    EXPECT_EQ(parseComments(bytes)->entries[0].value, "fi");
}

TEST(Comments, AreNoneInOtherPackets) {
    EXPECT_FALSE(parseComments(std::vector<uint8_t>{1, 'v', 'i', 'd', 'e', 'o'}));
}

TEST(Chapters, AreSortedByTheirTimes) {
    const auto comments =
            parseComments(header({"CHAPTER02=00:01:00.500", "CHAPTER02NAME=two",
                                  "chapter01=00:00:00.000", "CHAPTER01NAME=one", "CHAPTERS=none"}));
    const auto chapters = chaptersOf(*comments);
    ASSERT_EQ(chapters.size(), 2U);
    EXPECT_EQ(chapters[0].name, "one");
    EXPECT_EQ(chapters[1].name, "two");
    EXPECT_EQ(chapters[1].timeUs, 60500000);
    EXPECT_FALSE(isChapter(comments->entries[4]));
}

}  // namespace
}  // namespace ogmprobe
