// SPDX-License-Identifier: Apache-2.0
#include "sync/PageTimes.h"

#include <ElementaryStreams.h>
#include <OgmFile.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "TemporaryFolder.h"

namespace ogmprobe::test {
namespace {

using namespace android::ogm::test;
using MadePage = android::ogm::test::OggPage;
using testing::ElementsAre;
using testing::Optional;

constexpr uint32_t kVideo = 1;
constexpr uint32_t kAudio = 2;

auto at(int64_t timeUs) {
    return Optional(TimeRange::at(timeUs));
}

auto between(int64_t leastUs, int64_t mostUs) {
    return Optional(TimeRange{leastUs, mostUs});
}

/** The times of a file's streams, without a plug-in. */
std::map<uint32_t, PageTimes> timesOf(const OgmFile& made, UnitKind audio = {}) {
    const TemporaryFolder folder;
    const std::string path =
            folder.write("a.ogm", std::string(made.bytes().begin(), made.bytes().end()));
    const OggFile file(path);
    OggScanner scanner(path);
    std::map<uint32_t, StreamAccount> accounts;
    audio.kind = TrackKind::kAudio;
    for (const auto& [serial, packets] : packetsOf(file)) {
        StreamAccount& account = accounts[serial];
        account.ledger.serial = serial;
        account.kind = serial == kAudio ? audio : UnitKind{TrackKind::kVideo, {}, {}};
        account.packets = packets;
        account.units = unitsOf(file, packets, account.kind, scanner);
    }
    return pageTimesOf(file, accounts);
}

MadePage page(uint32_t serial, uint64_t granule, const std::vector<Bytes>& packets) {
    MadePage made(serial);
    made.granule(granule);
    for (const Bytes& packet : packets) {
        made.packet(packet);
    }
    return made;
}

Bytes frame(uint8_t number) {
    return dataPacket(kPlainPacket, {number, 1, 2, 3});
}

/** An audio packet whose header states a length of up to 65535. */
Bytes lastingPacket(uint16_t length) {
    return dataPacket(0x80, {static_cast<uint8_t>(length), static_cast<uint8_t>(length >> 8)},
                      Bytes(9, 7));
}

OgmFile withAudioHeader(const std::string& tag, uint64_t rate = 1000) {
    AudioHeader header;
    header.subtype = tag;
    header.samplesPerUnit = rate;
    OgmFile file;
    file.addHeader(kAudio, header);
    return file;
}

TEST(PageTimes, FramesOfVideoAreCountedFromTheFirstPagesGranulePosition) {
    OgmFile ends;
    ends.addHeader(kVideo, VideoHeader());
    ends.addComment(kVideo);
    ends.add(page(kVideo, 2, {frame(0), frame(1)}));
    ends.add(page(kVideo, 4, {frame(2), frame(3)}));
    const auto times = timesOf(ends).at(kVideo);
    EXPECT_EQ(times.reading, GranuleReading::kEnd);
    EXPECT_THAT(times.units, ElementsAre(std::nullopt, at(0), at(40000), at(80000), at(120000)));
    EXPECT_THAT(times.firstOfPages, ElementsAre(1U, 3U));

    OgmFile begins;
    begins.addHeader(kVideo, VideoHeader());
    begins.add(page(kVideo, 1, {frame(0), frame(1)}));
    begins.add(page(kVideo, 3, {frame(2), frame(3)}));
    EXPECT_THAT(timesOf(begins).at(kVideo).units,
                ElementsAre(at(0), at(40000), at(80000), at(120000)));
}

TEST(PageTimes, AStatedLengthIsTaken) {
    OgmFile file = withAudioHeader("00FF");
    file.add(page(kAudio, 30, {lastingPacket(10), lastingPacket(20)}));
    file.add(page(kAudio, 100, {lastingPacket(30), lastingPacket(40)}));
    EXPECT_THAT(timesOf(file).at(kAudio).units,
                ElementsAre(at(0), at(10000), at(30000), at(60000)));
}

TEST(PageTimes, PcmIsCountedByItsBytes) {
    OgmFile file = withAudioHeader("0001");
    file.add(
            page(kAudio, 30,
                 {dataPacket(kPlainPacket, Bytes(20, 1)), dataPacket(kPlainPacket, Bytes(40, 2))}));
    EXPECT_THAT(timesOf(file).at(kAudio).units, ElementsAre(at(0), at(10000)));
}

TEST(PageTimes, PacketsWithoutALengthHaveBounds) {
    OgmFile file = withAudioHeader("00FF");
    file.add(page(kAudio, 100, {dataPacket(kPlainPacket, {1, 2, 3, 4})}));
    file.add(
            page(kAudio, 200,
                 {dataPacket(kPlainPacket, {1, 2, 3, 4}), dataPacket(kPlainPacket, {5, 6, 7, 8})}));
    const auto times = timesOf(file).at(kAudio);
    EXPECT_EQ(times.reading, GranuleReading::kUnknown);
    EXPECT_THAT(times.units,
                ElementsAre(between(0, 100000), between(100000, 200000), between(100000, 200000)));
}

TEST(PageTimes, AStreamThatDoesNotShowItIsReadLikeTheOthers) {
    OgmFile file = withAudioHeader("00FF");
    file.addHeader(kVideo, VideoHeader());
    file.add(page(kVideo, 0, {frame(0)}));
    file.add(page(kAudio, 100, {dataPacket(kPlainPacket, {1, 2, 3, 4})}));
    file.add(page(kAudio, 200, {dataPacket(kPlainPacket, {1, 2, 3, 4})}));
    const auto times = timesOf(file).at(kAudio);
    EXPECT_EQ(times.reading, GranuleReading::kBeginning);
    EXPECT_TRUE(times.isReadLikeOthers);
    EXPECT_THAT(times.units, ElementsAre(at(100000), at(200000)));
}

TEST(PageTimes, FramesOfAudioAreCountedByTheirSamples) {
    OgmFile file = withAudioHeader("2000", 48000);
    Bytes two;
    for (uint32_t i = 0; i < 2; ++i) {
        Ac3Frame made;
        made.seed = i;
        append(two, made.bytes());
    }
    file.add(page(kAudio, 3072, {dataPacket(kPlainPacket, two)}));
    file.add(page(kAudio, 6144, {dataPacket(kPlainPacket, two)}));
    EXPECT_THAT(timesOf(file, {{}, AudioFraming::kAc3, {}}).at(kAudio).units,
                ElementsAre(at(0), at(32000), at(64000), at(96000)));
}

TEST(PageTimes, APacketOverSeveralPagesBelongsToTheOneWhereItEnds) {
    OgmFile file;
    file.addHeader(kVideo, VideoHeader());
    file.add(page(kVideo, 1, {frame(0)}).openPacket(Bytes(255, 0)));
    file.add(MadePage(kVideo).granule(ogmprobe::kNoGranule).continued().openPacket(Bytes(255, 1)));
    file.add(MadePage(kVideo).granule(3).continued().packet({2}).packet(frame(2)));
    const auto times = timesOf(file).at(kVideo);
    EXPECT_THAT(times.units, ElementsAre(at(0), at(40000), at(80000)));
    EXPECT_THAT(times.firstOfPages, ElementsAre(0U, 1U));
}

TEST(PageTimes, AfterMissingPagesTheNextPageShowsTheTime) {
    OgmFile file;
    file.addHeader(kVideo, VideoHeader());
    file.add(page(kVideo, 1, {frame(0)}).sequence(1));
    file.add(page(kVideo, 10, {frame(8), frame(9)}).sequence(5));
    EXPECT_THAT(timesOf(file).at(kVideo).units, ElementsAre(at(0), at(320000), at(360000)));
}

TEST(PageTimes, APacketWithoutAnEndHasNoTime) {
    OgmFile file;
    file.addHeader(kVideo, VideoHeader());
    file.add(page(kVideo, 1, {frame(0)}).openPacket(Bytes(255, 0)));
    EXPECT_THAT(timesOf(file).at(kVideo).units, ElementsAre(at(0), std::nullopt));
}

TEST(PageTimes, WildGranulePositionsShowNothing) {
    OgmFile file;
    file.addHeader(kVideo, VideoHeader());
    file.add(page(kVideo, uint64_t{1} << 63, {frame(0)}));
    file.add(page(kVideo, uint64_t{1} << 62, {frame(1)}));
    EXPECT_THAT(timesOf(file).at(kVideo).units, ElementsAre(std::nullopt, std::nullopt));
}

TEST(PageTimes, AStreamWithoutAnnouncementHasNoTimes) {
    OgmFile file;
    file.add(page(kVideo, 1, {frame(0)}));
    EXPECT_THAT(timesOf(file).at(kVideo).units, ElementsAre(std::nullopt));
}

}  // namespace
}  // namespace ogmprobe::test
