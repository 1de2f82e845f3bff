// SPDX-License-Identifier: Apache-2.0
#include <algorithm>

#include "PluginTest.h"

namespace android::ogm::test {
namespace {

using ::testing::ElementsAreArray;

const LogLine kFindVideo = infoLine("Find Video pattern\n");
const LogLine kFindAudio = infoLine("Find non-vorbis audio in OGM file");
const LogLine kFindVorbis = infoLine("Find Vorbis audio\n");
const LogLine kSearchFails = errorLine("search Ogm signature fail\n");

class SniffTest : public PluginTest {
  protected:
    bool accepts(const OgmFile& file) { return accepts(file.bytes()); }

    bool accepts(const Bytes& bytes) {
        MemorySource source(bytes, &mEvents);
        return sniff(source).creator != nullptr;
    }

    /** Checks the lines between the first of the sniff and those that report its result. */
    void expectFound(const std::vector<LogLine>& found, bool accepted, int vorbis) {
        std::vector<LogLine> lines{infoLine("[ogm]SniffVendorExtractor IN")};
        lines.insert(lines.end(), found.begin(), found.end());
        if (accepted) {
            lines.push_back(infoLine(formatted("sniffOgm OK, isVorbisExist =%d", vorbis)));
            lines.push_back(debugLine("return true confidence: 0.500000"));
        } else {
            lines.push_back(
                    errorLine(formatted("Sniff:parseOgmHeader fail,isVorbisExist=%d", vorbis)));
        }
        EXPECT_THAT(mEvents.lines(), ElementsAreArray(lines));
    }
};

/** A packet of `type` that begins with `identification`. */
Bytes identified(uint8_t type, std::string_view identification) {
    Bytes packet = joined({{type}, bytesOf(identification)});
    packet.resize(30);
    return packet;
}

TEST_F(SniffTest, AVideoHeaderIsAccepted) {
    OgmFile file;
    file.addHeader(1, VideoHeader());
    EXPECT_TRUE(accepts(file));
    expectFound({kFindVideo}, true, 0);
}

TEST_F(SniffTest, AnAudioHeaderIsAccepted) {
    OgmFile file;
    file.addHeader(1, AudioHeader());
    EXPECT_TRUE(accepts(file));
    expectFound({kFindAudio}, true, 0);
}

TEST_F(SniffTest, AVideoHeaderAfterAVorbisHeaderIsAcceptedWithVorbisSeen) {
    OgmFile file;
    file.addHeader(1, vorbisIdentificationHeader());
    file.addHeader(2, VideoHeader());
    EXPECT_TRUE(accepts(file));
    expectFound({kFindVorbis, kFindVideo}, true, 1);
}

TEST_F(SniffTest, AVorbisHeaderAfterAVideoHeaderIsNotReached) {
    OgmFile file;
    file.addHeader(1, VideoHeader());
    file.addHeader(2, vorbisIdentificationHeader());
    EXPECT_TRUE(accepts(file));
    expectFound({kFindVideo}, true, 0);
}

TEST_F(SniffTest, APlainVorbisFileIsRejectedWithVorbisSeen) {
    OgmFile file;
    file.addHeader(1, vorbisIdentificationHeader());
    file.add(OggPage(1).sequence(1).packet(vorbisCommentHeader()).packet(pattern(100, 1)));
    EXPECT_FALSE(accepts(file));
    expectFound({kFindVorbis}, false, 1);
}

TEST_F(SniffTest, TheTypeOfAVorbisPacketIsNotLookedAt) {
    OgmFile file;
    file.addHeader(1, identified(0x03, "vorbis"));
    file.addHeader(1, identified(0x00, "vorbis"));
    EXPECT_FALSE(accepts(file));
    expectFound({kFindVorbis, kFindVorbis}, false, 1);
}

TEST_F(SniffTest, ATheoraHeaderIsAcceptedAsVideo) {
    OgmFile file;
    file.addHeader(1, theoraIdentificationHeader());
    EXPECT_TRUE(accepts(file));
    expectFound({kFindVideo}, true, 0);
}

TEST_F(SniffTest, ATheoraHeaderOfPacketTypeOneIsAcceptedToo) {
    OgmFile file;
    file.addHeader(1, identified(0x01, "theora"));
    EXPECT_TRUE(accepts(file));
    expectFound({kFindVideo}, true, 0);
}

TEST_F(SniffTest, VideoAndAudioOfAnotherPacketTypeAreNotRecognised) {
    OgmFile file;
    file.addHeader(1, identified(0x00, "video"));
    file.addHeader(2, identified(0x03, "audio"));
    EXPECT_FALSE(accepts(file));
    expectFound({}, false, 0);
}

TEST_F(SniffTest, AFileOfTextStreamsIsRejected) {
    OgmFile file;
    file.addHeader(1, textHeader());
    file.addHeader(2, textHeader());
    EXPECT_FALSE(accepts(file));
    expectFound({}, false, 0);
}

TEST_F(SniffTest, ATextStreamIsPassedOver) {
    OgmFile file;
    file.addHeader(1, textHeader());
    file.addHeader(2, AudioHeader());
    EXPECT_TRUE(accepts(file));
    expectFound({kFindAudio}, true, 0);
}

TEST_F(SniffTest, BehindJunkEveryPageIsSearchedFor) {
    OgmFile file;
    file.addJunk(10);
    file.addHeader(1, textHeader());
    file.addJunk(5);
    file.addHeader(2, VideoHeader());
    EXPECT_TRUE(accepts(file));
    expectFound({kFindVideo}, true, 0);
}

TEST_F(SniffTest, BehindJunkASearchWithoutAPageFails) {
    OgmFile file;
    file.addJunk(10);
    file.addHeader(1, textHeader());
    EXPECT_FALSE(accepts(file));
    expectFound({kSearchFails}, false, 0);
}

TEST_F(SniffTest, WithoutJunkInFrontNoLaterPageIsSearchedFor) {
    OgmFile file;
    file.addHeader(1, textHeader());
    file.addJunk(5);
    file.add(OggPage(2).beginOfStream().checksum(0).packet(VideoHeader().bytes()));
    EXPECT_FALSE(accepts(file));
    expectFound({}, false, 0);
}

TEST_F(SniffTest, AFileWithoutAnyPageFailsTheSearch) {
    EXPECT_FALSE(accepts(filled(2000, 'x')));
    expectFound({kSearchFails}, false, 0);
}

TEST_F(SniffTest, ThePatternIsFoundAtTheLastPlaceThatIsTried) {
    Bytes bytes = filled(1024, 'x');
    const Bytes page = bytesOf("OggS");
    std::copy(page.begin(), page.end(), bytes.begin() + 1019);
    EXPECT_FALSE(accepts(bytes));
    expectFound({}, false, 0);  // found, but the walk ends there
}

TEST_F(SniffTest, ThePatternIsNotLookedForInTheLastFourBytes) {
    Bytes bytes = filled(1024, 'x');
    const Bytes page = bytesOf("OggS");
    std::copy(page.begin(), page.end(), bytes.begin() + 1020);
    EXPECT_FALSE(accepts(bytes));
    expectFound({kSearchFails}, false, 0);
}

TEST_F(SniffTest, APageOfTwoSegmentsIsSteppedOverByItsFirstLacingValue) {
    Bytes bytes = OggPage(1).packet(filled(10, 'a')).packet(filled(20, 'b')).bytes();
    // What lies 28 + 10 bytes further on is read as a page header, whatever it is.
    constexpr size_t kNextPage = 28 + 10;
    bytes.resize(kNextPage + 26, 0);
    append(bytes, {1, 60, 1});
    append(bytes, bytesOf("video"));
    EXPECT_TRUE(accepts(bytes));
    expectFound({kFindVideo}, true, 0);
}

TEST_F(SniffTest, AVideoHeaderOnAPageOfTwoSegmentsIsNotRecognised) {
    OgmFile file;
    file.add(OggPage(1).beginOfStream().packet(VideoHeader().bytes()).packet({1}).checksum(0));
    EXPECT_FALSE(accepts(file));
    expectFound({}, false, 0);
}

TEST_F(SniffTest, APageThatBeginsInTheLastFourBytesIsNotReached) {
    // Pages of one segment that end exactly at 1020.
    OgmFile file;
    for (int i = 0; i < 3; ++i) {
        file.addHeader(1, filled(254, 0));
    }
    const size_t rest = 1020 - file.size() - 28;
    file.addHeader(1, filled(rest, 0));
    ASSERT_EQ(file.size(), 1020U);
    file.addHeader(2, VideoHeader());
    EXPECT_FALSE(accepts(file));
    expectFound({}, false, 0);
}

}  // namespace
}  // namespace android::ogm::test
