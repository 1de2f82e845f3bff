// SPDX-License-Identifier: Apache-2.0
#include "Bytes.h"
#include "LogTest.h"
#include "codec/MpegAudioHeader.h"

namespace android::ogm::test::find_mp3_header_test {
namespace {

constexpr uint32_t kLayer3At128 = 0xFFFB9064;  // MPEG-1, 128 kbit/s, 44100 Hz: 417 bytes

/** How a search for a confirmed header ends, and what it logs. */
class FindMP3HeaderTest : public LogTest {
  protected:
    struct Result {
        uint32_t status;
        uint64_t offset;
        uint32_t header;

        bool operator==(const Result& o) const {
            return status == o.status && offset == o.offset && header == o.header;
        }
        friend std::ostream& operator<<(std::ostream& stream, const Result& r) {
            return stream << std::hex << r.status << std::dec << ", offset " << r.offset
                          << ", header " << std::hex << r.header << std::dec;
        }
    };

    static constexpr uint32_t kUntouched = 0x12345678;

    static Result found(uint64_t offset, uint32_t header) { return {0, offset, header}; }
    static Result notFound(uint64_t offset) { return {0x80000000, offset, kUntouched}; }

    Result search(const Bytes& bytes, uint64_t offset = 0) {
        const auto exact = std::make_unique<uint8_t[]>(bytes.size());
        std::copy(bytes.begin(), bytes.end(), exact.get());
        Result result{1, offset, kUntouched};
        result.status =
                findMP3Header(ByteView(exact.get(), bytes.size()), &result.offset, &result.header);
        return result;
    }

    static LogLine said(std::string text) {
        return {ANDROID_LOG_INFO, "avc_utils", std::move(text)};
    }
    static LogLine header1(const std::string& bytes) { return said("mp3 header1: " + bytes); }
    static LogLine header2(const std::string& bytes) { return said("mp3 header2: " + bytes); }
    static LogLine header3(const std::string& bytes) { return said("mp3 header3: " + bytes); }
    static LogLine sizes(int frame, int offset, int buffer) {
        return said(formatted("mp3 frame size=%d, frame header offset=%d,buff size=%d", frame,
                              offset, buffer));
    }
    static LogLine overflow() { return said("frame overflow buffer"); }
    static LogLine failed(int size, const std::string& bytes) {
        return said(formatted("findMP3Header():size:%d,Not found MP3Headr,buf:", size) + bytes);
    }

    /** A frame of 417 bytes in which nothing else looks like a header. */
    static Bytes frame(uint32_t seed = 0) { return filledFrame(kLayer3At128, 417, seed); }
    static Bytes filledFrame(uint32_t header, size_t size, uint32_t seed = 0) {
        return joined({bigEndian(header), filled(size - 4, static_cast<uint8_t>(0x11 + seed))});
    }
};

TEST_F(FindMP3HeaderTest, FourBytesOrFewerFailAtOnce) {
    EXPECT_EQ(search({}), notFound(0));
    EXPECT_EQ(search({0xFF}), notFound(0));
    EXPECT_EQ(search(bigEndian(kLayer3At128)), notFound(0));
    EXPECT_THAT(mEvents.lines(), ::testing::ElementsAre(failed(0, " 0  0  0  0  0  0  0  0"),
                                                        failed(1, "ff  0  0  0  0  0  0  0"),
                                                        failed(4, "ff fb 90 64  0  0  0  0")));
}

TEST_F(FindMP3HeaderTest, FourBytesOrFewerAfterTheStartFailAtOnce) {
    EXPECT_EQ(search(frame(), 413), notFound(413));
    EXPECT_THAT(mEvents.lines(), ::testing::ElementsAre(failed(417, "ff fb 90 64 11 11 11 11")));
}

TEST_F(FindMP3HeaderTest, TwoFramesInARowSucceedWithTheOffsetOfTheSecond) {
    EXPECT_EQ(search(joined({frame(0), frame(1)})), found(417, kLayer3At128));
    EXPECT_THAT(mEvents.lines(),
                ::testing::ElementsAre(header1("FF FB 90 64"), sizes(417, 0, 834),
                                       header2("FF FB 90 64"), header3("64 12 12 12")));
}

TEST_F(FindMP3HeaderTest, ThreeBytesOfTheSecondHeaderConfirmTheFirst) {
    const Bytes at48kHz = filledFrame(0xFFFB9464, 384);
    EXPECT_EQ(search(head(joined({at48kHz, at48kHz}), 387)), found(384, 0xFFFB9464));
    EXPECT_THAT(mEvents.lines(),
                ::testing::ElementsAre(header1("FF FB 94 64"), sizes(384, 0, 387),
                                       header2("FF FB 94  0"), header3(" 0  0  0  0")));
}

TEST_F(FindMP3HeaderTest, TwoBytesOfTheSecondHeaderConfirmTheFirstOnlyAtSamplingRateIndexZero) {
    // The missing byte is read as zero. Only its two bits of the sampling rate matter.
    EXPECT_EQ(search(head(joined({frame(0), frame(1)}), 419)), found(417, kLayer3At128));
    EXPECT_THAT(mEvents.lines(),
                ::testing::ElementsAre(header1("FF FB 90 64"), sizes(417, 0, 419),
                                       header2("FF FB  0  0"), header3(" 0  0  0  0")));
    mEvents.clear();
    const Bytes at48kHz = filledFrame(0xFFFB9464, 384);
    // From each later position the next frame is later too, until it is past the bytes.
    EXPECT_EQ(search(head(joined({at48kHz, at48kHz}), 386)), notFound(2));
    EXPECT_THAT(mEvents.lines(),
                ::testing::ElementsAre(header1("FF FB 94 64"), sizes(384, 0, 386),
                                       header2("FF FB  0  0"), header3(" 0  0  0  0"),
                                       sizes(384, 1, 386), header2("FB  0  0  0"),
                                       header3(" 0  0  0  0"), sizes(384, 2, 386), overflow(),
                                       failed(386, "ff fb 94 64 11 11 11 11")));
}

TEST_F(FindMP3HeaderTest, ASingleFrameWithNothingAfterItOverflowsTheBuffer) {
    EXPECT_EQ(search(frame()), notFound(0));
    EXPECT_THAT(mEvents.lines(),
                ::testing::ElementsAre(header1("FF FB 90 64"), sizes(417, 0, 417), overflow(),
                                       failed(417, "ff fb 90 64 11 11 11 11")));
}

TEST_F(FindMP3HeaderTest, BytesWithoutAnyPlausibleHeaderFailWithASizeOfZero) {
    EXPECT_EQ(search(filled(20, 0xAB)), notFound(0));
    EXPECT_THAT(mEvents.lines(),
                ::testing::ElementsAre(sizes(0, 0, 20), failed(20, "ab ab ab ab ab ab ab ab")));
}

TEST_F(FindMP3HeaderTest, AHeaderInTheLastFourBytesIsNotTried) {
    const Bytes bytes = joined({filled(6, 0x01), bigEndian(kLayer3At128)});
    EXPECT_EQ(search(bytes), notFound(0));
    EXPECT_THAT(mEvents.lines(),
                ::testing::ElementsAre(sizes(0, 0, 10), failed(10, " 1  1  1  1  1  1 ff fb")));
    mEvents.clear();
    EXPECT_EQ(search(joined({bytes, {0x01}})), notFound(6));
    EXPECT_THAT(mEvents.lines(),
                ::testing::ElementsAre(header1("FF FB 90 64"), sizes(417, 6, 11), overflow(),
                                       failed(11, " 1  1  1  1  1  1 ff fb")));
}

TEST_F(FindMP3HeaderTest, APlausibleHeaderThatDoesNotDecodeIsLoggedAndPassedOver) {
    const Bytes bytes = joined({{0xFF, 0xFB, 0x00, 0x64}, frame(0), frame(1)});
    EXPECT_EQ(search(bytes), found(421, kLayer3At128));
    EXPECT_THAT(mEvents.lines(),
                ::testing::ElementsAre(header1("FF FB  0 64"), header1("FF FB 90 64"),
                                       sizes(417, 4, 838), header2("FF FB 90 64"),
                                       header3("64 12 12 12")));
}

TEST_F(FindMP3HeaderTest, OnlyHeadersThatDoNotDecodeFailWithTheOffsetOfTheLast) {
    const Bytes freeFormat{0xFF, 0xFB, 0x00, 0x64};
    const Bytes bytes = joined({filled(3, 1), freeFormat, filled(3, 1), freeFormat, filled(5, 1)});
    EXPECT_EQ(search(bytes), notFound(10));
    EXPECT_THAT(mEvents.lines(),
                ::testing::ElementsAre(header1("FF FB  0 64"), header1("FF FB  0 64"),
                                       sizes(0, 10, 19), failed(19, " 1  1  1 ff fb  0 64  1")));
}

TEST_F(FindMP3HeaderTest, AHeaderConfirmedOnlyThreeBytesAfterTheExpectedPositionSucceeds) {
    const Bytes bytes = joined({frame(0), {0x00, 0x28, 0x01}, frame(1)});
    EXPECT_EQ(search(bytes), found(417, kLayer3At128));
    EXPECT_THAT(mEvents.lines(),
                ::testing::ElementsAre(header1("FF FB 90 64"), sizes(417, 0, 837),
                                       header2(" 0 28  1 FF"), header3("FF FB 90 64")));
}

TEST_F(FindMP3HeaderTest, AHeaderOneTwoOrFourBytesAfterTheExpectedPositionIsNoConfirmation) {
    for (const size_t gap : {1, 2, 4}) {
        mEvents.clear();
        const Bytes bytes = joined({frame(0), filled(gap, 1), frame(1)});
        // The second frame becomes the candidate, and there is nothing after it.
        EXPECT_EQ(search(bytes), notFound(417 + gap)) << gap;
        EXPECT_EQ(mEvents.count(overflow()), 1U) << gap;
    }
}

TEST_F(FindMP3HeaderTest, ConfirmationAllowsAnotherBitrateButNotAnotherSamplingRate) {
    const Bytes otherBitrate = filledFrame(0xFFFB5064, 208);
    EXPECT_EQ(search(joined({frame(), otherBitrate})), found(417, kLayer3At128));
    const Bytes otherRate = filledFrame(0xFFFB9464, 384);
    EXPECT_EQ(search(joined({frame(), otherRate})), notFound(417));
}

TEST_F(FindMP3HeaderTest, AValidHeaderInPlaceOfTheExpectedOneBecomesTheCandidate) {
    const Bytes other = filledFrame(0xFFFB9464, 384, 1);
    EXPECT_EQ(search(joined({frame(0), other, other})), found(801, 0xFFFB9464));
    EXPECT_THAT(mEvents.lines(),
                ::testing::ElementsAre(header1("FF FB 90 64"), sizes(417, 0, 1185),
                                       header2("FF FB 94 64"), header3("64 12 12 12"),
                                       header1("FF FB 94 64"), sizes(384, 417, 1185),
                                       header2("FF FB 94 64"), header3("64 12 12 12")));
}

TEST_F(FindMP3HeaderTest, ANewCandidateAtTheVeryEndFailsWithoutAnotherTry) {
    const Bytes bytes = joined({frame(), bigEndian(0xFFFB9464)});
    EXPECT_EQ(search(bytes), notFound(417));
    EXPECT_THAT(mEvents.lines(),
                ::testing::ElementsAre(header1("FF FB 90 64"), sizes(417, 0, 421),
                                       header2("FF FB 94 64"), header3("64  0  0  0"),
                                       failed(421, "ff fb 90 64 11 11 11 11")));
}

TEST_F(FindMP3HeaderTest, AnUnconfirmedCandidateIsDroppedForTheNextPosition) {
    // An accidental header, then two real frames, neither of them 417 bytes after it.
    const Bytes bytes = joined({bigEndian(kLayer3At128), filled(5, 1), frame(1), frame(2)});
    EXPECT_EQ(search(bytes), found(426, kLayer3At128));
    EXPECT_THAT(mEvents.lines(),
                ::testing::ElementsAre(header1("FF FB 90 64"), sizes(417, 0, 843),
                                       header2("12 12 12 12"), header3("12 12 12 12"),
                                       header1("FF FB 90 64"), sizes(417, 9, 843),
                                       header2("FF FB 90 64"), header3("64 13 13 13")));
}

TEST_F(FindMP3HeaderTest, AnUnconfirmedCandidateStaysAndTheSearchMovesOn) {
    // No other header: its size is tried from each later position, to the end of the bytes.
    EXPECT_EQ(search(joined({frame(), filled(13, 0x11)})), notFound(13));
    EXPECT_EQ(mEvents.count(header1("FF FB 90 64")), 1U);
    EXPECT_EQ(mEvents.count(header2("11 11 11 11")), 10U);
    EXPECT_EQ(mEvents.linesBeginning("mp3 header2").size(), 13U);
    EXPECT_EQ(mEvents.linesBeginning("mp3 frame size=417").size(), 14U);
    EXPECT_TRUE(mEvents.holds(sizes(417, 13, 430)));
    EXPECT_EQ(mEvents.count(overflow()), 1U);
}

TEST_F(FindMP3HeaderTest, ACandidateIsConfirmedOneFrameAfterAPositionWithoutAHeader) {
    // The header at 421 is too close to the end to be a candidate, but confirms from position 1.
    const Bytes bytes = joined({frame(), filled(4, 0x11), bigEndian(kLayer3At128)});
    EXPECT_EQ(search(bytes), found(418, kLayer3At128));
    EXPECT_THAT(mEvents.lines(),
                ::testing::ElementsAre(header1("FF FB 90 64"), sizes(417, 0, 425),
                                       header2("11 11 11 11"), header3("11 FF FB 90"),
                                       sizes(417, 1, 425), header2("11 11 11 FF"),
                                       header3("FF FB 90 64")));
}

TEST_F(FindMP3HeaderTest, ALaterHeaderThatDoesNotDecodeReplacesTheCandidateInHand) {
    Bytes bytes = joined({frame(), filled(13, 0x11)});
    bytes[100] = 0xFF;
    bytes[101] = 0xFB;
    bytes[102] = 0x00;
    EXPECT_EQ(search(bytes), notFound(100));
    EXPECT_THAT(mEvents.lines(),
                ::testing::ElementsAre(header1("FF FB 90 64"), sizes(417, 0, 430),
                                       header2("11 11 11 11"), header3("11 11 11 11"),
                                       header1("FF FB  0 11"), sizes(0, 100, 430),
                                       failed(430, "ff fb 90 64 11 11 11 11")));
}

TEST_F(FindMP3HeaderTest, TheSearchBeginsAtTheGivenOffset) {
    const Bytes frames = joined({frame(0), frame(1), frame(2)});
    EXPECT_EQ(search(frames, 0), found(417, kLayer3At128));
    EXPECT_EQ(search(frames, 1), found(834, kLayer3At128));
    EXPECT_EQ(search(frames, 417), found(834, kLayer3At128));
    EXPECT_EQ(search(frames, 418), notFound(834));
}

TEST_F(FindMP3HeaderTest, AnOffsetPastTheBytesFails) {
    EXPECT_EQ(search(joined({frame(0), frame(1)}), 5000), notFound(5000));
}

TEST_F(FindMP3HeaderTest, TheHeaderReportedIsTheFirstOfTheTwo) {
    const Bytes otherBitrate = filledFrame(0xFFFB5064, 208);
    EXPECT_EQ(search(joined({otherBitrate, frame()})), found(208, 0xFFFB5064));
}

}  // namespace
}  // namespace android::ogm::test::find_mp3_header_test
