// SPDX-License-Identifier: Apache-2.0
#include "CodecConfigFixture.h"

namespace android::ogm::test::codec_config_walk_test {
namespace {

using ::testing::ElementsAreArray;
using ::testing::IsEmpty;

/** The search of a stream's first data pages for its configuration. */
using CodecConfigWalkTest = CodecConfigFixture;

TEST_F(CodecConfigWalkTest, OnePageWithVolAndPictureIsReadOnceAndEndsTheSearch) {
    OgmFile file = videoFile();
    const OggPage page = OggPage(kVideo).granule(1).packet(wholeConfiguration());
    const size_t offset = file.add(page);
    file.addData(kVideo, 2, dataPacket(kPlainPacket, vop()));
    collect(file);

    std::vector<Event> expected{infoLine("OGV_VIDEO_MP4:TYPE:18, serialNo=1")};
    addPageEvents(expected, offset, page);
    addPayloadEvents(expected, offset, page);
    expected.emplace_back(growthLine(65536));
    addLines(expected, {"WAIT_FOR_VOL_START", "WAIT_FOR_VOL_START", "set WAIT_FOR_VOP_START",
                        "enter WAIT_FOR_VOP_START", "found MPEG4 video codec config (176 x 144)",
                        "get csd success!", "parse CSD data done!"});
    EXPECT_THAT(mEvents.events(), ElementsAreArray(expected));
    EXPECT_EQ(configurationAt(), vol());
}

TEST_F(CodecConfigWalkTest, APageThatIsNotEnoughIsCompletedByTheNext) {
    OgmFile file = videoFile();
    const OggPage first =
            OggPage(kVideo).granule(1).packet(dataPacket(kSyncPacket, joined({vol(), vop()})));
    const OggPage second = OggPage(kVideo).granule(2).packet(dataPacket(kPlainPacket, vop()));
    const size_t firstOffset = file.add(first);
    const size_t secondOffset = file.add(second);
    collect(file);

    std::vector<Event> expected{infoLine("OGV_VIDEO_MP4:TYPE:18, serialNo=1")};
    addPageEvents(expected, firstOffset, first);
    addPayloadEvents(expected, firstOffset, first);
    expected.emplace_back(growthLine(65536));
    addLines(expected, {"WAIT_FOR_VOL_START", "set WAIT_FOR_VOP_START"});
    addPageEvents(expected, secondOffset, second);
    addPayloadEvents(expected, secondOffset, second);
    addLines(expected, {"WAIT_FOR_VOL_START", "set WAIT_FOR_VOP_START", "enter WAIT_FOR_VOP_START",
                        "found MPEG4 video codec config (176 x 144)", "get csd success!",
                        "parse CSD data done!"});
    EXPECT_THAT(mEvents.events(), ElementsAreArray(expected));
    // The packet's header byte is before the VOL and treated as a part of it.
    EXPECT_EQ(configurationAt(), joined({{kSyncPacket}, vol()}));
}

TEST_F(CodecConfigWalkTest, AHeaderThatIsCutByAPageBoundaryIsPutTogether) {
    const Bytes lead = joined({{kSyncPacket}, {0x00, 0x00, 0x01, 0xB2}, pattern(244, 1)});
    const Bytes stream = joined({lead, configuredPictures()});
    OgmFile file = videoFile();
    file.add(OggPage(kVideo).granule(1).openPacket(head(stream, 255)));
    file.add(OggPage(kVideo).granule(2).continued().packet(tail(stream, 255)));
    collect(file);
    EXPECT_EQ(configurationAt(), vol());
}

TEST_F(CodecConfigWalkTest, PagesOfOtherStreamsAreLoggedAndPassedOver) {
    OgmFile file = videoFile();
    const OggPage other = OggPage(99).granule(1).packet(wholeConfiguration());
    const OggPage page = OggPage(kVideo).granule(1).packet(wholeConfiguration());
    const size_t otherOffset = file.add(other);
    const size_t offset = file.add(page);
    collect(file);

    std::vector<Event> expected{infoLine("OGV_VIDEO_MP4:TYPE:18, serialNo=1")};
    addPageEvents(expected, otherOffset, other);
    addPageEvents(expected, offset, page);
    addPayloadEvents(expected, offset, page);
    auto events = mEvents.events();
    events.resize(std::min(events.size(), expected.size()));
    EXPECT_THAT(events, ElementsAreArray(expected));
    EXPECT_EQ(configurationAt(), vol());
}

TEST_F(CodecConfigWalkTest, JunkBetweenPagesIsSkippedByteByByte) {
    OgmFile file = videoFile();
    const OggPage first = OggPage(99).granule(1).packet({0x01});
    const OggPage page = OggPage(kVideo).granule(1).packet(wholeConfiguration());
    const size_t firstOffset = file.add(first);
    const size_t junk = file.addJunk(5);
    const size_t offset = file.add(page);
    collect(file);

    std::vector<Event> expected{infoLine("OGV_VIDEO_MP4:TYPE:18, serialNo=1")};
    addPageEvents(expected, firstOffset, first);
    for (size_t i = 0; i < 5; ++i) {
        expected.emplace_back(readOf(junk + i, 4));
    }
    expected.emplace_back(readOf(offset, 4));
    expected.emplace_back(skipLine(5, junk));
    expected.emplace_back(readOf(offset, kPageHeaderSize));
    expected.emplace_back(readOf(offset + kPageHeaderSize, 1));
    expected.emplace_back(pageLine(offset, page.size()));
    auto events = mEvents.events();
    events.resize(std::min(events.size(), expected.size()));
    EXPECT_THAT(events, ElementsAreArray(expected));
    EXPECT_EQ(configurationAt(), vol());
}

TEST_F(CodecConfigWalkTest, TheEndOfTheFileEndsTheWalkWithoutConfiguration) {
    OgmFile file = videoFile();
    file.addData(kVideo, 1, dataPacket(kSyncPacket, vol()));
    const size_t end = file.size();
    collect(file);
    auto events = mEvents.events();
    ASSERT_GE(events.size(), 4U);
    events.erase(events.begin(), events.end() - 4);
    EXPECT_THAT(events, ElementsAreArray(std::vector<Event>{
                                ReadCall{static_cast<int64_t>(end), 4, 0},
                                errorLine("FindPage: readSize = 0"),
                                infoLine(formatted("Cannot find a page start,LINE:2993 from %ld\n",
                                                   static_cast<long>(end))),
                                failure(18, -10006)}));
    EXPECT_EQ(esdsAt(), std::nullopt);
}

TEST_F(CodecConfigWalkTest, JunkAtTheEndOfTheFileIsNamedByWhereTheSearchBegan) {
    OgmFile file = videoFile();
    file.addData(kVideo, 1, dataPacket(kSyncPacket, vol()));
    const size_t end = file.addJunk(10);
    collect(file);
    auto events = mEvents.events();
    ASSERT_GE(events.size(), 4U);
    events.erase(events.begin(), events.end() - 4);
    EXPECT_THAT(events, ElementsAreArray(std::vector<Event>{
                                ReadCall{static_cast<int64_t>(end) + 7, 4, 3},
                                errorLine("FindPage: readSize = 3"),
                                infoLine(formatted("Cannot find a page start,LINE:2993 from %ld\n",
                                                   static_cast<long>(end))),
                                failure(18, -10006)}));
}

TEST_F(CodecConfigWalkTest, ARefusedPageHeaderIsNamedByItsOwnOffset) {
    OgmFile file = videoFile();
    file.addData(99, 1, {0x01});
    file.addJunk(5);
    const size_t offset = file.add(OggPage(kVideo).version(1).packet({0x01}));
    collect(file);
    auto events = mEvents.events();
    ASSERT_GE(events.size(), 2U);
    events.erase(events.begin(), events.end() - 2);
    EXPECT_THAT(events, ElementsAreArray(std::vector<Event>{
                                infoLine(formatted("Cannot read a page header, at %ld\n",
                                                   static_cast<long>(offset))),
                                failure(18, -10006)}));
}

TEST_F(CodecConfigWalkTest, APayloadThatIsCutOffEndsTheWalk) {
    OgmFile file = videoFile();
    const Bytes page = OggPage(kVideo).granule(1).packet(wholeConfiguration()).bytes();
    const size_t payload = wholeConfiguration().size();
    file.add(head(page, page.size() - 1));
    collect(file);
    auto events = mEvents.events();
    ASSERT_GE(events.size(), 2U);
    events.erase(events.begin(), events.end() - 2);
    EXPECT_THAT(events, ElementsAreArray(std::vector<Event>{
                                errorLine(formatted("Cannot read page payload, size %d\n",
                                                    static_cast<int>(payload))),
                                failure(18, -10007)}));
    EXPECT_EQ(esdsAt(), std::nullopt);
}

TEST_F(CodecConfigWalkTest, APayloadThatIsRefusedEndsTheWalkToo) {
    OgmFile file = videoFile();
    const OggPage page = OggPage(kVideo).granule(1).packet(wholeConfiguration());
    const size_t offset = file.add(page);
    auto source = std::make_unique<MemorySource>(file.bytes(), &mEvents);
    source->setFault(faultAtOffset(static_cast<int64_t>(offset + page.bodyOffset()), kReadRefused));
    collect(std::move(source));
    EXPECT_TRUE(mEvents.holds(failure(18, -10007)));
    EXPECT_EQ(mEvents.linesBeginning("Cannot read page payload, size").size(), 1U);
    EXPECT_EQ(esdsAt(), std::nullopt);
}

TEST_F(CodecConfigWalkTest, APageWithoutPayloadMakesABufferWithoutCapacity) {
    OgmFile file = videoFile();
    file.add(OggPage(kVideo).granule(1));
    file.addData(kVideo, 1, wholeConfiguration());
    collect(file);
    EXPECT_TRUE(mEvents.holds(payloadLine(0)));
    EXPECT_TRUE(mEvents.holds(growthLine(0)));
    EXPECT_TRUE(mEvents.holds(errorLine("can't find start code for mpeg4 video")));
    EXPECT_TRUE(mEvents.holds(growthLine(65536)));
    EXPECT_EQ(configurationAt(), vol());
}

/** Adds a page with a packet of `size` bytes: a single chunk that is not a VOL. */
void addUselessPage(OgmFile& file, uint64_t granule, size_t size) {
    const Bytes chunk = joined({{0x00, 0x00, 0x01, 0xB2}, pattern(size - 5, 1)});
    file.addData(kVideo, granule, dataPacket(kPlainPacket, chunk));
}

TEST_F(CodecConfigWalkTest, TheBufferGrowsInStepsOf64KiB) {
    OgmFile file = videoFile();
    const Bytes packet = dataPacket(kSyncPacket, joined({vol(), pattern(39000, 1)}));
    file.addData(kVideo, 1, packet);
    file.addData(kVideo, 2, dataPacket(kPlainPacket, pattern(40000, 2)));
    file.addData(kVideo, 3, dataPacket(kPlainPacket, pattern(53000, 3)));
    collect(file);
    const auto lines = mEvents.linesBeginning("resizing RAW buffer");
    EXPECT_THAT(lines,
                ::testing::ElementsAre(growthLine(65536), growthLine(131072), growthLine(196608)));
}

TEST_F(CodecConfigWalkTest, RemovedBytesMakeRoomInTheBuffer) {
    OgmFile file = videoFile();
    // Each page ends the chunk of the page before, which is then removed.
    for (uint64_t i = 1; i < 5; ++i) {
        addUselessPage(file, i, 32000);
    }
    file.addData(kVideo, 5, wholeConfiguration());
    collect(file);
    EXPECT_THAT(mEvents.linesBeginning("resizing RAW buffer"),
                ::testing::ElementsAre(growthLine(65536)));
    EXPECT_EQ(configurationAt(), vol());
}

TEST_F(CodecConfigWalkTest, PagesWithoutAVolAreSearchedUpToThe121st) {
    OgmFile file = videoFile();
    for (uint64_t i = 1; i <= kMaxPages + 9; ++i) {
        addUselessPage(file, i, 50);
    }
    collect(file);
    EXPECT_EQ(mEvents.linesBeginning("pageDataSize = 50").size(), kMaxPages);
    EXPECT_EQ(mEvents.linesBeginning("pageOffset=").size(), kMaxPages);
    EXPECT_EQ(mEvents.lines().back(), failure(18, -10002));
    EXPECT_EQ(esdsAt(), std::nullopt);
}

TEST_F(CodecConfigWalkTest, The121stPageIsStillUsedAndThe122ndIsNot) {
    for (const size_t useless : {kMaxPages - 1, kMaxPages}) {
        OgmFile file = videoFile();
        for (uint64_t i = 1; i <= useless; ++i) {
            file.addData(99, i, {0x01});
        }
        file.addData(kVideo, 1, wholeConfiguration());
        collect(file);
        EXPECT_EQ(esdsAt().has_value(), useless < kMaxPages) << useless;
    }
}

TEST_F(CodecConfigWalkTest, AStreamWithoutAPageAmongThe121IsNoFailure) {
    OgmFile file = videoFile();
    for (uint64_t i = 1; i <= kMaxPages; ++i) {
        file.addData(99, i, {0x01});
    }
    collect(file);
    EXPECT_EQ(mEvents.linesBeginning("pageOffset=").size(), kMaxPages);
    EXPECT_THAT(mEvents.linesBeginning("collect type"), IsEmpty());
    EXPECT_THAT(mEvents.linesBeginning("parse CSD data done!"), IsEmpty());
}

TEST_F(CodecConfigWalkTest, EachStreamHas121PagesAndABufferOfItsOwn) {
    OgmFile file = videoFile();
    file.addHeader(kAudio, audioHeader("0055"));
    const Bytes frame = MpegAudioFrame{}.bytes();
    for (uint64_t i = 1; i <= kMaxPages + 9; ++i) {
        addUselessPage(file, i, 50);
        if (i == 30) {
            file.addData(kAudio, i, audioPacket(joined({frame, frame})));
        }
    }
    collect(file);
    EXPECT_EQ(mEvents.linesBeginning("pageDataSize = 50").size(), kMaxPages - 1);
    EXPECT_TRUE(mEvents.holds(failure(18, -10002)));
    EXPECT_EQ(int32Of(formatAt(1), AMEDIAFORMAT_KEY_MPEG_AUD_LAYER), 3);
    EXPECT_EQ(mEvents.count(growthLine(65536)), 2U);
}

}  // namespace
}  // namespace android::ogm::test::codec_config_walk_test
