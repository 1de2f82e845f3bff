// SPDX-License-Identifier: Apache-2.0
#include <algorithm>
#include <cstring>

#include "PluginTest.h"

namespace android::ogm::test::plugin_entry_test {
namespace {

using ::testing::Each;
using ::testing::ElementsAre;

const LogLine kSniffBegins = infoLine("[ogm]SniffVendorExtractor IN");

class PluginEntryTest : public PluginTest {
  protected:
    SniffResult sniffBytes(const Bytes& bytes, const SniffResult& before = {}) {
        MemorySource source(bytes, &mEvents);
        return sniff(source, before);
    }

    static Bytes videoHeaderPage() {
        return OggPage(1).beginOfStream().packet(VideoHeader().bytes()).bytes();
    }
};

TEST_F(PluginEntryTest, TheDefinitionNamesTheInterfaceAndThePlugin) {
    const ExtractorDef definition = pluginDefinition();
    EXPECT_EQ(definition.def_version, 3U);
    EXPECT_EQ(definition.extractor_version, 2U);
    EXPECT_STREQ(definition.extractor_name, "ZOR OGM Extractor");
}

TEST_F(PluginEntryTest, TheSupportedTypesAreOgmAndOggAndThenNull) {
    const char** types = pluginDefinition().u.v3.supported_types;
    EXPECT_STREQ(types[0], "ogm");
    EXPECT_STREQ(types[1], "ogg");
    EXPECT_EQ(types[2], nullptr);
}

TEST_F(PluginEntryTest, TheUuidIsNotZeroAndTheSameInEveryCall) {
    const ExtractorDef first = pluginDefinition();
    const ExtractorDef second = pluginDefinition();
    EXPECT_EQ(memcmp(first.extractor_uuid.b, second.extractor_uuid.b, 16), 0);
    EXPECT_THAT(Bytes(first.extractor_uuid.b, first.extractor_uuid.b + 16),
                ::testing::Not(Each(0)));
}

class ShortSourceTest : public PluginEntryTest, public ::testing::WithParamInterface<size_t> {};

TEST_P(ShortSourceTest, ASourceShorterThanFourBytesIsRejectedWithItsLength) {
    SniffResult before;
    before.confidence = 0.75F;
    const SniffResult result = sniffBytes(head(bytesOf("OggS"), GetParam()), before);
    EXPECT_EQ(result.creator, nullptr);
    EXPECT_EQ(result.confidence, 0.0F);
    EXPECT_THAT(mEvents.events(),
                ElementsAre(Event(kSniffBegins),
                            Event(ReadCall{0, 1024, static_cast<ssize_t>(GetParam())}),
                            Event(errorLine(formatted("Sniff:DataSource read fail, length=%zu",
                                                      GetParam())))));
}

INSTANTIATE_TEST_SUITE_P(Lengths, ShortSourceTest, ::testing::Values(0, 1, 2, 3));

TEST_F(PluginEntryTest, AFailedReadIsRejectedWithItsStatus) {
    MemorySource source(videoHeaderPage(), &mEvents);
    source.setFault(faultyRead(0, kReadRefused));
    const SniffResult result = sniff(source);
    EXPECT_EQ(result.creator, nullptr);
    EXPECT_EQ(result.confidence, 0.0F);
    EXPECT_THAT(
            mEvents.lines(),
            ElementsAre(kSniffBegins, errorLine("Sniff:DataSource read fail, length=-2147483648")));
}

TEST_F(PluginEntryTest, FourBytesAreEnoughToLookForPages) {
    const SniffResult result = sniffBytes({'x', 'x', 'x', 'x'});
    EXPECT_EQ(result.creator, nullptr);
    EXPECT_THAT(mEvents.events(),
                ElementsAre(Event(kSniffBegins), Event(ReadCall{0, 1024, 4}),
                            Event(errorLine("search Ogm signature fail\n")),
                            Event(errorLine("Sniff:parseOgmHeader fail,isVorbisExist=0"))));
}

TEST_F(PluginEntryTest, AHundredBytesWithAVideoHeaderPageAreAccepted) {
    Bytes bytes = videoHeaderPage();
    bytes.resize(100);
    const SniffResult result = sniffBytes(bytes);
    EXPECT_NE(result.creator, nullptr);
    EXPECT_EQ(result.confidence, 0.5F);
    EXPECT_THAT(mEvents.events(),
                ElementsAre(Event(kSniffBegins), Event(ReadCall{0, 1024, 100}),
                            Event(infoLine("Find Video pattern\n")),
                            Event(infoLine("sniffOgm OK, isVorbisExist =0")),
                            Event(debugLine("return true confidence: 0.500000"))));
}

TEST_F(PluginEntryTest, AVorbisHeaderAmongTheFirstPagesIsReported) {
    OgmFile file;
    file.addHeader(1, vorbisIdentificationHeader());
    EXPECT_EQ(sniffBytes(file.bytes()).creator, nullptr);
    EXPECT_EQ(mEvents.lines().back(), errorLine("Sniff:parseOgmHeader fail,isVorbisExist=1"));
    file.addHeader(2, VideoHeader());
    EXPECT_NE(sniffBytes(file.bytes()).creator, nullptr);
    EXPECT_TRUE(mEvents.holds(infoLine("sniffOgm OK, isVorbisExist =1")));
}

TEST_F(PluginEntryTest, ALongFileIsSniffedWithOneReadOf1024Bytes) {
    const OgmFile file = oneVideoOneAudioFile({});
    EXPECT_NE(sniffBytes(file.bytes()).creator, nullptr);
    EXPECT_THAT(mEvents.reads(), ElementsAre(ReadCall{0, 1024, 1024}));
}

TEST_F(PluginEntryTest, AShortReadOfALongFileIsSniffedOverItsBytesAndZeros) {
    MemorySource source(oneVideoOneAudioFile({}).bytes(), &mEvents);
    source.setFault(faultyRead(0, 20));  // the page header is cut off
    EXPECT_EQ(sniff(source).creator, nullptr);
    EXPECT_THAT(mEvents.lines(),
                ElementsAre(kSniffBegins, errorLine("Sniff:parseOgmHeader fail,isVorbisExist=0")));
}

TEST_F(PluginEntryTest, ARejectionSetsTheConfidenceToZero) {
    SniffResult before;
    before.confidence = 0.75F;
    EXPECT_EQ(sniffBytes(filled(2000, 'x'), before).confidence, 0.0F);
}

TEST_F(PluginEntryTest, TheSniffLeavesMetaAndFreeMetaAsTheyWere) {
    int meta = 0;
    SniffResult before;
    before.meta = &meta;
    before.freeMeta = [](void*) {};
    const SniffResult accepted = sniffBytes(videoHeaderPage(), before);
    EXPECT_EQ(accepted.meta, before.meta);
    EXPECT_EQ(accepted.freeMeta, before.freeMeta);
    const SniffResult rejected = sniffBytes(filled(100, 'x'), before);
    EXPECT_EQ(rejected.meta, before.meta);
    EXPECT_EQ(rejected.freeMeta, before.freeMeta);
}

TEST_F(PluginEntryTest, TheCreatorTakesAnUnreadableSourceAndGivesNoTracks) {
    MemorySource source(Bytes{}, &mEvents);
    source.setFault(faultyRead(0, kReadRefused, Lasting::kFromThenOn));
    source.setSizeStatus(UNKNOWN_ERROR);
    const Extractor extractor = openFile(source);
    EXPECT_EQ(extractor.countTracks(), 0U);
    EXPECT_EQ(extractor.fileFormat().int64(AMEDIAFORMAT_KEY_DURATION), 0);
}

TEST_F(PluginEntryTest, EveryCreationGivesItsOwnExtractor) {
    const OgmFile file = oneVideoOneAudioFile({});
    OpenedFile first = open(file);
    OpenedFile second = open(file);
    const auto fromFirst = first->startedTrack(0)->readAll();
    const auto fromSecond = second->startedTrack(0)->readAll();
    ASSERT_FALSE(fromFirst.empty());
    ASSERT_EQ(fromFirst.size(), fromSecond.size());
    EXPECT_EQ(fromFirst.back().bytes, fromSecond.back().bytes);
}

TEST_F(PluginEntryTest, AnIndexOutOfRangeGivesNoTrackTable) {
    OpenedFile opened = open(oneVideoOneAudioFile({}));
    EXPECT_EQ(opened->track(2), nullptr);
    EXPECT_NE(opened->track(1), nullptr);
}

}  // namespace
}  // namespace android::ogm::test::plugin_entry_test
