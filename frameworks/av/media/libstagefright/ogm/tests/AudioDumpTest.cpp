// SPDX-License-Identifier: Apache-2.0
#include "DumpFile.h"
#include "PluginTest.h"
#include "ScopedProperty.h"

namespace android::ogm::test::audio_dump_test {
namespace {

using ::testing::IsEmpty;

constexpr char kDumpProperty[] = "vendor.zor.ogmextractor.dump.audio";
const LogLine kOpenFails = debugLine("Open bs_dump_OGM_AUDIO.bin failed!");

class AudioDumpTest : public PluginTest {
  protected:
    /** A video track and an audio track of 60-byte packets. */
    OpenedFile openFileOf(uint16_t bits = 16) {
        OneVideoOneAudio content = mContent;
        content.audio.bitsPerSample = bits;
        return open(oneVideoOneAudioFile(content));
    }

    static constexpr size_t kPacketSize = 60;
    static constexpr size_t kBufferSize = 256;
    const OneVideoOneAudio mContent = [] {
        OneVideoOneAudio content;
        content.packetSize = kPacketSize;
        content.comments = false;
        return content;
    }();
};

TEST_F(AudioDumpTest, EveryAudioBufferIsAppendedWithItsWholeCapacity) {
    const ScopedProperty dump(kDumpProperty, "1");
    const DumpFile file;
    OpenedFile opened = openFileOf();
    const auto audio = opened->startedTrack(1);
    ASSERT_EQ(audio->readAll(3).size(), 3U);
    const Bytes dumped = file.contents();
    ASSERT_EQ(dumped.size(), 3 * kBufferSize);
    for (size_t i = 0; i < 3; ++i) {
        EXPECT_EQ(head(tail(dumped, i * kBufferSize), kPacketSize), mContent.packetPayload(i)) << i;
    }
    // The buffer is reused, so it still has the bytes that were after the first packet.
    EXPECT_EQ(tail(head(dumped, kBufferSize), kPacketSize),
              tail(head(tail(dumped, kBufferSize), kBufferSize), kPacketSize));
}

TEST_F(AudioDumpTest, TheFileIsOpenedForAppendingForEachBuffer) {
    const ScopedProperty dump(kDumpProperty, "1");
    const DumpFile file;
    OpenedFile opened = openFileOf();
    opened->startedTrack(1)->readAll(3);
    EXPECT_EQ(file.modes(), (std::vector<std::string>{"ab", "ab", "ab"}));
}

TEST_F(AudioDumpTest, AFileThatCannotBeOpenedIsLoggedAndTheReadSucceeds) {
    const ScopedProperty dump(kDumpProperty, "1");
    const DumpFile file(DumpFile::Opening::kFails);
    OpenedFile opened = openFileOf();
    const auto audio = opened->startedTrack(1);
    mEvents.clear();
    EXPECT_EQ(audio->read().status, AMEDIA_OK);
    EXPECT_EQ(mEvents.count(kOpenFails), 1U);
    EXPECT_EQ(mEvents.lines().back(), kOpenFails);  // after the line about the buffer
    EXPECT_THAT(file.contents(), IsEmpty());
}

TEST_F(AudioDumpTest, AReadWithoutABufferOpensNothing) {
    const ScopedProperty dump(kDumpProperty, "1");
    const DumpFile file;
    OgmFile empty;
    empty.addHeader(1, AudioHeader());
    OpenedFile opened = open(empty);
    EXPECT_EQ(opened->startedTrack(0)->read().status, AMEDIA_ERROR_END_OF_STREAM);
    EXPECT_THAT(file.modes(), IsEmpty());
}

TEST_F(AudioDumpTest, VideoIsNeverDumped) {
    const ScopedProperty dump(kDumpProperty, "1");
    const DumpFile file;
    OpenedFile opened = openFileOf();
    opened->startedTrack(0)->readAll(3);
    EXPECT_THAT(file.modes(), IsEmpty());
}

TEST_F(AudioDumpTest, ConvertedPcmIsDumpedAfterItsConversion) {
    const ScopedProperty dump(kDumpProperty, "1");
    const DumpFile file;
    OpenedFile opened = openFileOf(8);
    const auto audio = opened->startedTrack(1);
    const ReadResult result = audio->read();
    ASSERT_EQ(result.bytes.size(), 2 * kPacketSize);
    const Bytes dumped = file.contents();
    EXPECT_EQ(dumped.size(), result.capacity);
    EXPECT_EQ(head(dumped, result.bytes.size()), result.bytes);
}

TEST_F(AudioDumpTest, WithoutThePropertyNothingIsDumped) {
    const DumpFile file;
    OpenedFile opened = openFileOf();
    opened->startedTrack(1)->readAll(3);
    EXPECT_THAT(file.modes(), IsEmpty());
}

TEST_F(AudioDumpTest, ThePropertyIsReadWhenTheTrackIsMade) {
    const DumpFile file;
    OpenedFile opened = openFileOf();
    const auto audio = opened->startedTrack(1);
    const ScopedProperty dump(kDumpProperty, "1");
    audio->readAll(3);
    EXPECT_THAT(file.modes(), IsEmpty());
}

struct PropertyCase {
    const char* value;
    bool dumps;
};

class DumpPropertyTest : public AudioDumpTest,
                         public ::testing::WithParamInterface<PropertyCase> {};

TEST_P(DumpPropertyTest, AnyIntegerButZeroSwitchesTheDumpOn) {
    const ScopedProperty dump(kDumpProperty, GetParam().value);
    const DumpFile file;
    OpenedFile opened = openFileOf();
    opened->startedTrack(1)->read();
    EXPECT_EQ(file.modes().size(), GetParam().dumps ? 1U : 0U) << GetParam().value;
}

INSTANTIATE_TEST_SUITE_P(Values, DumpPropertyTest,
                         ::testing::Values(PropertyCase{"0", false}, PropertyCase{"00", false},
                                           PropertyCase{"true", false}, PropertyCase{"x1", false},
                                           PropertyCase{"2", true}, PropertyCase{"-1", true},
                                           PropertyCase{"0x10", true}, PropertyCase{"1on", true}));

}  // namespace
}  // namespace android::ogm::test::audio_dump_test
