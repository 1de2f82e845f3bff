// SPDX-License-Identifier: Apache-2.0
#include "page/Sniff.h"

#include <algorithm>

#include "LogTest.h"
#include "OgmFile.h"

namespace android::ogm::test::sniff_test {
namespace {

constexpr size_t kSniffSize = 1024;
const LogLine kFindVideo = infoLine("Find Video pattern\n");
const LogLine kFindAudio = infoLine("Find non-vorbis audio in OGM file");
const LogLine kFindVorbis = infoLine("Find Vorbis audio\n");
const LogLine kSearchFails = errorLine("search Ogm signature fail\n");

class SniffTest : public LogTest {
  protected:
    /** With a buffer of exactly these bytes. */
    bool acceptsExactly(const Bytes& bytes) {
        return sniffOgm(bytes.data(), static_cast<uint32_t>(bytes.size()), &mVorbis);
    }

    /** With the first bytes of a file; a short file is padded with zeros. */
    bool accepts(Bytes bytes) {
        bytes.resize(kSniffSize);
        return acceptsExactly(bytes);
    }
    bool accepts(const OgmFile& file) { return accepts(file.bytes()); }

    void expectFound(const std::vector<LogLine>& lines, int vorbis) const {
        EXPECT_EQ(mEvents.lines(), lines);
        EXPECT_EQ(mVorbis, vorbis);
    }

    uint8_t mVorbis = 0;
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
    expectFound({kFindVideo}, 0);
}

TEST_F(SniffTest, AnAudioHeaderIsAccepted) {
    OgmFile file;
    file.addHeader(1, AudioHeader());
    EXPECT_TRUE(accepts(file));
    expectFound({kFindAudio}, 0);
}

TEST_F(SniffTest, AVideoHeaderAfterAVorbisHeaderIsAcceptedWithVorbisSeen) {
    OgmFile file;
    file.addHeader(1, vorbisIdentificationHeader());
    file.addHeader(2, VideoHeader());
    EXPECT_TRUE(accepts(file));
    expectFound({kFindVorbis, kFindVideo}, 1);
}

TEST_F(SniffTest, AVorbisHeaderAfterAVideoHeaderIsNotReached) {
    OgmFile file;
    file.addHeader(1, VideoHeader());
    file.addHeader(2, vorbisIdentificationHeader());
    EXPECT_TRUE(accepts(file));
    expectFound({kFindVideo}, 0);
}

TEST_F(SniffTest, APlainVorbisFileIsRejectedWithVorbisSeen) {
    OgmFile file;
    file.addHeader(1, vorbisIdentificationHeader());
    file.add(OggPage(1).sequence(1).packet(vorbisCommentHeader()).packet(pattern(100, 1)));
    EXPECT_FALSE(accepts(file));
    expectFound({kFindVorbis}, 1);
}

TEST_F(SniffTest, TheTypeOfAVorbisPacketIsIgnored) {
    OgmFile file;
    file.addHeader(1, identified(0x03, "vorbis"));
    file.addHeader(1, identified(0x00, "vorbis"));
    EXPECT_FALSE(accepts(file));
    expectFound({kFindVorbis, kFindVorbis}, 1);
}

TEST_F(SniffTest, ATheoraHeaderIsAcceptedAsVideo) {
    OgmFile file;
    file.addHeader(1, theoraIdentificationHeader());
    EXPECT_TRUE(accepts(file));
    expectFound({kFindVideo}, 0);
}

TEST_F(SniffTest, ATheoraHeaderOfPacketTypeOneIsAcceptedToo) {
    OgmFile file;
    file.addHeader(1, identified(0x01, "theora"));
    EXPECT_TRUE(accepts(file));
    expectFound({kFindVideo}, 0);
}

TEST_F(SniffTest, VideoAndAudioOfAnotherPacketTypeAreNotRecognised) {
    OgmFile file;
    file.addHeader(1, identified(0x00, "video"));
    file.addHeader(2, identified(0x03, "audio"));
    EXPECT_FALSE(accepts(file));
    expectFound({}, 0);
}

TEST_F(SniffTest, AFileOfTextStreamsIsRejected) {
    OgmFile file;
    file.addHeader(1, textHeader());
    file.addHeader(2, textHeader());
    EXPECT_FALSE(accepts(file));
    expectFound({}, 0);
}

TEST_F(SniffTest, ATextStreamIsPassedOver) {
    OgmFile file;
    file.addHeader(1, textHeader());
    file.addHeader(2, AudioHeader());
    EXPECT_TRUE(accepts(file));
    expectFound({kFindAudio}, 0);
}

TEST_F(SniffTest, AfterJunkEveryPageIsSearchedFor) {
    OgmFile file;
    file.addJunk(10);
    file.addHeader(1, textHeader());
    file.addJunk(5);
    file.addHeader(2, VideoHeader());
    EXPECT_TRUE(accepts(file));
    expectFound({kFindVideo}, 0);
}

TEST_F(SniffTest, AfterJunkASearchWithoutAPageFails) {
    OgmFile file;
    file.addJunk(10);
    file.addHeader(1, textHeader());
    EXPECT_FALSE(accepts(file));
    expectFound({kSearchFails}, 0);
}

TEST_F(SniffTest, WithoutLeadingJunkNoLaterPageIsSearchedFor) {
    OgmFile file;
    file.addHeader(1, textHeader());
    file.addJunk(5);
    file.add(OggPage(2).beginOfStream().checksum(0).packet(VideoHeader().bytes()));
    EXPECT_FALSE(accepts(file));
    expectFound({}, 0);
}

TEST_F(SniffTest, AFileWithoutAnyPageFailsTheSearch) {
    EXPECT_FALSE(accepts(filled(2000, 'x')));
    expectFound({kSearchFails}, 0);
}

TEST_F(SniffTest, ThePatternIsFoundAtTheLastPlaceThatIsTried) {
    Bytes bytes = filled(1024, 'x');
    const Bytes page = bytesOf("OggS");
    std::copy(page.begin(), page.end(), bytes.begin() + 1019);
    EXPECT_FALSE(accepts(bytes));
    expectFound({}, 0);  // found, but the search ends there
}

TEST_F(SniffTest, ThePatternIsNotLookedForInTheLastFourBytes) {
    Bytes bytes = filled(1024, 'x');
    const Bytes page = bytesOf("OggS");
    std::copy(page.begin(), page.end(), bytes.begin() + 1020);
    EXPECT_FALSE(accepts(bytes));
    expectFound({kSearchFails}, 0);
}

TEST_F(SniffTest, APageOfTwoSegmentsIsSteppedOverByItsFirstLacingValue) {
    Bytes bytes = OggPage(1).packet(filled(10, 'a')).packet(filled(20, 'b')).bytes();
    // The bytes 28 + 10 bytes later are read as a page header, whatever they are.
    constexpr size_t kNextPage = 28 + 10;
    bytes.resize(kNextPage + 26, 0);
    append(bytes, {1, 60, 1});
    append(bytes, bytesOf("video"));
    EXPECT_TRUE(accepts(bytes));
    expectFound({kFindVideo}, 0);
}

TEST_F(SniffTest, AVideoHeaderOnAPageOfTwoSegmentsIsNotRecognised) {
    OgmFile file;
    file.add(OggPage(1).beginOfStream().packet(VideoHeader().bytes()).packet({1}).checksum(0));
    EXPECT_FALSE(accepts(file));
    expectFound({}, 0);
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
    expectFound({}, 0);
}

TEST_F(SniffTest, FourBytesAreRefusedWithoutAMessage) {
    EXPECT_FALSE(acceptsExactly(bytesOf("OggS")));
    EXPECT_FALSE(acceptsExactly(bytesOf("xxxx")));
    EXPECT_TRUE(mEvents.events().empty());
}

TEST_F(SniffTest, AVorbisHeaderSetsTheFlagAndNothingElseDoes) {
    OgmFile video;
    video.addHeader(1, VideoHeader());
    EXPECT_TRUE(acceptsExactly(video.bytes()));
    EXPECT_EQ(mVorbis, 0);
    OgmFile vorbis;
    vorbis.addHeader(1, vorbisIdentificationHeader());
    EXPECT_FALSE(acceptsExactly(vorbis.bytes()));
    EXPECT_EQ(mVorbis, 1);
}

TEST_F(SniffTest, ABufferThatEndsWithinTheIdentificationMatchesNothing) {
    OgmFile file;
    file.addHeader(1, VideoHeader());
    EXPECT_FALSE(acceptsExactly(head(file.bytes(), 28 + 1 + 4)));
    EXPECT_TRUE(acceptsExactly(head(file.bytes(), 28 + 1 + 5)));
}

TEST_F(SniffTest, EveryLengthOfAFileIsBounded) {
    OgmFile file;
    file.addHeader(1, textHeader());
    file.addHeader(2, vorbisIdentificationHeader());
    file.addHeader(3, VideoHeader());
    for (size_t length = 5; length <= file.size(); ++length) {
        // A separate copy, so that a sanitizer sees a read past it.
        const Bytes bytes = head(file.bytes(), length);
        EXPECT_EQ(acceptsExactly(bytes), length >= file.size() - 53 + 6) << length;
    }
}

}  // namespace
}  // namespace android::ogm::test::sniff_test
