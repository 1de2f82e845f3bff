// SPDX-License-Identifier: Apache-2.0
#include "audio/AccessUnitCutter.h"

#include "CutterTest.h"
#include "ElementaryStreams.h"

namespace android::ogm::test::access_unit_cutter_test {
namespace {

using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::Pair;

const Bytes kPlausible{0xFF, 0xFB, 0x90};
const Bytes kAc3Sync{0x0B, 0x77};
const Bytes kDtsCoreSync{0x7F, 0xFE, 0x80, 0x01};
const Bytes kDtsSubstreamSync{0x64, 0x58, 0x20, 0x25};
const Bytes kDts14BitSync{0x1F, 0xFF, 0xE8, 0x00};

LogLine mpegOffset(int offset) {
    return infoLine(
            formatted("found something resembling an MPEG audio syncword at offset %d", offset));
}

LogLine ac3Offset(int offset) {
    return debugLine(formatted("found something resembling an AC3 syncword at offset %d", offset));
}

LogLine dtsOffset(int offset) {
    return infoLine(formatted("found something resembling an DTS syncword at offset %d", offset));
}

/** Which bytes of a packet are put into the elementary stream. */
class AccessUnitCutterTest : public CutterTest {
  protected:
    /** Appends to a new cutter of this type. */
    std::unique_ptr<CutterDriver> appended(uint32_t type, const Bytes& bytes) {
        auto cutter = cutterOf(type);
        EXPECT_TRUE(cutter->append(bytes, 1000));
        return cutter;
    }

    void expectRefused(uint32_t type, const Bytes& bytes) {
        auto cutter = cutterOf(type);
        EXPECT_FALSE(cutter->append(bytes, 1000));
        EXPECT_THAT(cutter->buffered(), IsEmpty());
        EXPECT_THAT(cutter->ranges(), IsEmpty());
        EXPECT_THAT(mEvents.lines(), IsEmpty());
    }
};

struct Sync {
    uint32_t type;
    Bytes bytes;
    LogLine (*offsetLine)(int offset);
};

class AlignmentTest : public AccessUnitCutterTest, public ::testing::WithParamInterface<Sync> {};

TEST_P(AlignmentTest, ASyncWordAtTheStartIsTakenWithoutAWord) {
    const Bytes bytes = joined({GetParam().bytes, pattern(5, 1)});
    auto cutter = appended(GetParam().type, bytes);
    EXPECT_EQ(cutter->buffered(), bytes);
    EXPECT_THAT(cutter->ranges(), ElementsAre(Pair(1000, bytes.size())));
    EXPECT_THAT(mEvents.lines(), IsEmpty());
}

TEST_P(AlignmentTest, BytesBeforeTheSyncWordAreDroppedAndTheirNumberLogged) {
    const Bytes bytes = joined({GetParam().bytes, pattern(5, 1)});
    for (const size_t junk : {1, 2, 3, 500}) {
        auto cutter = appended(GetParam().type, joined({pattern(junk, 2), bytes}));
        EXPECT_EQ(cutter->buffered(), bytes) << junk;
        EXPECT_THAT(cutter->ranges(), ElementsAre(Pair(1000, bytes.size()))) << junk;
        EXPECT_THAT(mEvents.lines(), ElementsAre(GetParam().offsetLine(static_cast<int>(junk))));
    }
}

TEST_P(AlignmentTest, ASyncWordAtTheVeryEndIsTaken) {
    auto cutter = appended(GetParam().type, joined({pattern(7, 2), GetParam().bytes}));
    EXPECT_EQ(cutter->buffered(), GetParam().bytes);
    EXPECT_THAT(mEvents.lines(), ElementsAre(GetParam().offsetLine(7)));
}

TEST_P(AlignmentTest, ASyncWordThatIsCutOffIsRefused) {
    const Bytes cut = head(GetParam().bytes, GetParam().bytes.size() - 1);
    expectRefused(GetParam().type, cut);
    expectRefused(GetParam().type, joined({pattern(7, 2), cut}));
}

TEST_P(AlignmentTest, BytesWithoutASyncWordAreRefused) {
    expectRefused(GetParam().type, {});
    expectRefused(GetParam().type, {0x55});
    expectRefused(GetParam().type, pattern(1000, 2));
}

TEST_P(AlignmentTest, BytesAfterOthersAreAllAppendedWhateverTheyAre) {
    const Bytes first = joined({GetParam().bytes, pattern(5, 1)});
    const Bytes second = joined({pattern(2, 3), GetParam().bytes, pattern(2, 4)});
    auto cutter = appended(GetParam().type, first);
    EXPECT_TRUE(cutter->append(second, 2000));
    EXPECT_TRUE(cutter->append(pattern(3, 5), 3000));
    EXPECT_TRUE(cutter->append({}, 4000));
    EXPECT_EQ(cutter->buffered(), joined({first, second, pattern(3, 5)}));
    EXPECT_THAT(cutter->ranges(), ElementsAre(Pair(1000, first.size()), Pair(2000, second.size()),
                                              Pair(3000, 3U), Pair(4000, 0U)));
    EXPECT_THAT(mEvents.lines(), IsEmpty());
}

TEST_P(AlignmentTest, AStreamThatWasClearedIsAlignedAgain) {
    auto cutter = appended(GetParam().type, joined({GetParam().bytes, pattern(5, 1)}));
    cutter->clear();
    EXPECT_THAT(cutter->buffered(), IsEmpty());
    EXPECT_THAT(cutter->ranges(), IsEmpty());
    EXPECT_FALSE(cutter->append(pattern(9, 2), 2000));
    EXPECT_TRUE(cutter->append(joined({pattern(2, 2), GetParam().bytes}), 3000));
    EXPECT_EQ(cutter->buffered(), GetParam().bytes);
    EXPECT_THAT(mEvents.lines(), Contains(GetParam().offsetLine(2)));
}

INSTANTIATE_TEST_SUITE_P(Types, AlignmentTest,
                         ::testing::Values(Sync{OGA_AUDIO_MP3, kPlausible, mpegOffset},
                                           Sync{OGA_AUDIO_AC3, kAc3Sync, ac3Offset},
                                           Sync{OGA_AUDIO_DTS, kDtsCoreSync, dtsOffset},
                                           Sync{OGA_AUDIO_DTS, kDtsSubstreamSync, dtsOffset}),
                         [](const auto& info) { return "Number" + std::to_string(info.index); });

TEST_F(AccessUnitCutterTest, OnlyStreamsOfLayerThreeAc3AndDtsHaveACutter) {
    for (uint32_t type = 0; type <= 30; ++type) {
        EXPECT_EQ(makeAccessUnitCutter(type) != nullptr, isReframedAudioType(type)) << type;
    }
}

TEST_F(AccessUnitCutterTest, AnMpegAudioHeaderOfTheFreeFormatIsASyncWord) {
    const Bytes bytes{0xFF, 0xFB, 0x00, 0x55};
    EXPECT_EQ(appended(OGA_AUDIO_MP3, bytes)->buffered(), bytes);
}

TEST_F(AccessUnitCutterTest, AnMpegAudioHeaderWithAReservedFieldIsNoSyncWord) {
    expectRefused(OGA_AUDIO_MP3, {0xFF, 0xEB, 0x90, 0x64});  // version
    expectRefused(OGA_AUDIO_MP3, {0xFF, 0xF9, 0x90, 0x64});  // layer
    expectRefused(OGA_AUDIO_MP3, {0xFF, 0xFB, 0xF0, 0x64});  // bit rate
    expectRefused(OGA_AUDIO_MP3, {0xFF, 0xFB, 0x9C, 0x64});  // sampling rate
}

TEST_F(AccessUnitCutterTest, AnAc3SyncWordIsTwoBytesInTheirOrder) {
    expectRefused(OGA_AUDIO_AC3, {0x77, 0x0B, 0x77 + 1, 0x0B});
    EXPECT_EQ(appended(OGA_AUDIO_AC3, {0x0B, 0x0B, 0x77})->buffered(), kAc3Sync);
}

TEST_F(AccessUnitCutterTest, AStreamDoesNotBeginWithADtsCoreOf14BitWords) {
    expectRefused(OGA_AUDIO_DTS, joined({kDts14BitSync, pattern(100, 1)}));
}

TEST_F(AccessUnitCutterTest, TheFirstOfTwoDtsSyncWordsIsUsedWhicheverItIs) {
    const Bytes bytes = joined({kDtsSubstreamSync, pattern(9, 1), kDtsCoreSync, {0x55}});
    EXPECT_EQ(appended(OGA_AUDIO_DTS, bytes)->buffered(), bytes);
    EXPECT_EQ(appended(OGA_AUDIO_DTS, joined({pattern(3, 2), bytes}))->buffered(), bytes);
}

TEST_F(AccessUnitCutterTest, MoreThanTheCapacityIsKeptWhole) {
    Bytes all = kAc3Sync;
    auto cutter = appended(OGA_AUDIO_AC3, kAc3Sync);
    for (uint32_t i = 0; i < 300; ++i) {
        const Bytes piece = pattern(997, i);
        EXPECT_TRUE(cutter->append(piece, 2000));
        append(all, piece);
    }
    EXPECT_EQ(cutter->buffered(), all);
    EXPECT_THAT(mEvents.lines(), IsEmpty());
}

TEST_F(AccessUnitCutterTest, OnceTheBufferIsEmptyAgainTheNextBytesAreAligned) {
    auto cutter = appended(OGA_AUDIO_AC3, Ac3Frame{}.bytes());
    EXPECT_EQ(cutter->cut().size(), 1U);
    EXPECT_THAT(cutter->buffered(), IsEmpty());
    EXPECT_FALSE(cutter->append(pattern(400, 1), 2000));
    EXPECT_TRUE(cutter->append(joined({pattern(2, 1), kAc3Sync}), 3000));
    EXPECT_THAT(mEvents.lines(), Contains(ac3Offset(2)));
    EXPECT_EQ(cutter->buffered(), kAc3Sync);
}

}  // namespace
}  // namespace android::ogm::test::access_unit_cutter_test
