// SPDX-License-Identifier: Apache-2.0
#include "commands/StreamWriter.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

#include "TemporaryFolder.h"

namespace ogmprobe {
namespace {

using testing::ElementsAreArray;
using Bytes = std::vector<uint8_t>;

const Bytes kPicture = {0, 0, 1, 0xb6, 0x10};
const Bytes kLayerAndPicture = {0, 0, 1, 0x20, 0x08, 0, 0, 1, 0xb6, 0x10};
const Bytes kLayer = {0, 0, 1, 0x20, 0x99};

TrackDescription track(const std::string& mime) {
    TrackDescription track;
    track.mime = mime;
    track.codec = codecOf(mime, {});
    return track;
}

Bytes operator+(Bytes first, const Bytes& second) {
    first.insert(first.end(), second.begin(), second.end());
    return first;
}

// The smallest descriptor with the configuration.
Bytes esdsAround(const Bytes& configuration) {
    const auto size = static_cast<uint8_t>(configuration.size());
    const auto configSize = static_cast<uint8_t>(15 + size);
    const auto wholeSize = static_cast<uint8_t>(20 + size);
    return Bytes{3, wholeSize, 0, 0, 0, 4, configSize, 0x20, 0x11} + Bytes(11) + Bytes{5, size} +
           configuration;
}

Bytes written(const TrackDescription& track, const std::vector<Packet>& packets) {
    const test::TemporaryFolder folder;
    NewFile file(folder.path("x"), Existing::kRefuse);
    const auto writer = makeStreamWriter(track, file);
    for (const Packet& packet : packets) {
        writer->write(packet);
    }
    writer->finish();
    file.commit();
    const std::string contents = folder.read("x");
    return {contents.begin(), contents.end()};
}

TEST(RawStream, IsOneBufferAfterTheOther) {
    EXPECT_THAT(written(track("audio/ac3"), {{0, true, {1, 2}}, {1, true, {}}, {2, true, {3}}}),
                ElementsAreArray({1, 2, 3}));
}

TEST(Mpeg4Stream, IsLedByTheConfigurationThatItLacks) {
    TrackDescription mpeg4 = track("video/mp4v-es");
    mpeg4.esds = esdsAround(kLayer);
    EXPECT_EQ(written(mpeg4, {{0, true, kPicture}, {1, false, kPicture}}),
              kLayer + kPicture + kPicture);
}

TEST(Mpeg4Stream, StaysAsItIsWithItsOwnConfiguration) {
    TrackDescription mpeg4 = track("video/mp4v-es");
    mpeg4.esds = esdsAround(kLayer);
    EXPECT_EQ(written(mpeg4, {{0, true, kLayerAndPicture}, {1, false, kPicture}}),
              kLayerAndPicture + kPicture);
}

TEST(Mpeg4Stream, StaysAsItIsWithoutAnEsdsOrWithADamagedOne) {
    TrackDescription mpeg4 = track("video/mp4v-es");
    EXPECT_EQ(written(mpeg4, {{0, true, kPicture}}), kPicture);
    mpeg4.esds = Bytes{3, 100};
    EXPECT_EQ(written(mpeg4, {{0, true, kPicture}}), kPicture);
}

uint64_t number(const Bytes& bytes, size_t offset) {
    return bytes[offset] | bytes[offset + 1] << 8 | bytes[offset + 2] << 16 |
           static_cast<uint64_t>(bytes[offset + 3]) << 24;
}

std::string text(const Bytes& bytes, size_t offset) {
    return {bytes.begin() + static_cast<ptrdiff_t>(offset),
            bytes.begin() + static_cast<ptrdiff_t>(offset) + 4};
}

TEST(AviStream, HasItsFramesAndAnIndexOfThem) {
    TrackDescription divx = track("video/divx3");
    divx.width = 176;
    divx.height = 144;
    divx.frameRate = 25;
    const Bytes avi = written(divx, {{0, true, {1, 2, 3}}, {40000, false, {4, 5}}});
    EXPECT_EQ(text(avi, 0) + text(avi, 8), "RIFFAVI ");
    EXPECT_EQ(number(avi, 4), avi.size() - 8);
    EXPECT_EQ(text(avi, 112), "DIV3");
    EXPECT_EQ(number(avi, 132), 25U) << "the rate";
    EXPECT_EQ(number(avi, 140), 2U) << "frames";
    const size_t movie = 220;
    EXPECT_EQ(text(avi, movie), "movi");
    EXPECT_EQ(Bytes(avi.begin() + movie + 4, avi.begin() + movie + 26),
              (Bytes{'0', '0', 'd', 'c', 3,   0, 0, 0, 1, 2, 3,
                     0,   '0', '0', 'd', 'c', 2, 0, 0, 0, 4, 5}));
    const size_t index = movie + 26;
    EXPECT_EQ(text(avi, index), "idx1");
    EXPECT_EQ(number(avi, index + 12), 0x10U) << "a sync frame";
    EXPECT_EQ(number(avi, index + 16), 4U);
    EXPECT_EQ(number(avi, index + 28), 0U);
    EXPECT_EQ(number(avi, index + 32), 16U);
    EXPECT_EQ(number(avi, index + 36), 2U);
}

TEST(AdpcmBlock, IsTheUsualOneOfTheRateIfPacketsAreOfWholeBlocks) {
    EXPECT_EQ(adpcmBlock(44100, 2, 4096), 2048U);
    EXPECT_EQ(adpcmBlock(22050, 1, 512), 512U);
    EXPECT_EQ(adpcmBlock(8000, 1, 768), 256U);
    EXPECT_EQ(adpcmBlock(44100, 2, 1000), 1000U);
    EXPECT_EQ(adpcmBlock(44100, 0, 1000), 1000U);
}

TEST(AdpcmStream, IsAWavFile) {
    TrackDescription adpcm = track("audio/x-adpcm-ms");
    adpcm.sampleRate = 22050;
    adpcm.channelCount = 1;
    const Bytes wav = written(adpcm, {{0, true, Bytes(512)}});
    EXPECT_EQ(text(wav, 0) + text(wav, 8), "RIFFWAVE");
    EXPECT_EQ(number(wav, 4), wav.size() - 8);
    EXPECT_EQ(wav[20], 2) << "MS ADPCM";
    EXPECT_EQ(wav[32] | wav[33] << 8, 512) << "the block";
    EXPECT_EQ(wav[38] | wav[39] << 8, 1012) << "samples of a block";
    EXPECT_EQ(text(wav, 70), "data");
    EXPECT_EQ(number(wav, 74), 512U);
}

TEST(WavHeader, DescribesSixteenBitSamples) {
    const Bytes expected = {'R', 'I', 'F',  'F',  40,  0,   0,    0,    'W', 'A', 'V',
                            'E', 'f', 'm',  't',  ' ', 16,  0,    0,    0,   1,   0,
                            2,   0,   0x44, 0xac, 0,   0,   0x10, 0xb1, 2,   0,   4,
                            0,   16,  0,    'd',  'a', 't', 'a',  4,    0,   0,   0};
    EXPECT_EQ(wavHeader(44100, 2, 4), expected);
}

TEST(WavHeader, CapsSizesThatItsFieldsCannotHold) {
    const Bytes header = wavHeader(8000, 1, uint64_t{1} << 33);
    EXPECT_EQ(Bytes(header.begin() + 4, header.begin() + 8), Bytes(4, 0xff));
    EXPECT_EQ(Bytes(header.begin() + 40, header.end()), Bytes(4, 0xff));
}

TEST(WavStream, HasItsSizesFilledInAtTheEnd) {
    TrackDescription pcm = track("audio/raw");
    pcm.sampleRate = 8000;
    pcm.channelCount = 1;
    EXPECT_EQ(written(pcm, {{0, true, {1, 2}}, {1, true, {3, 4}}}),
              (wavHeader(8000, 1, 4) + Bytes{1, 2, 3, 4}));
}

TEST(WavStream, IsFilledUpToAnEvenSizeThatIsNotCounted) {
    TrackDescription pcm = track("audio/raw");
    pcm.sampleRate = 8000;
    pcm.channelCount = 1;
    EXPECT_EQ(written(pcm, {{0, true, {1, 2}}, {1, true, {7}}}),
              (wavHeader(8000, 1, 3) + Bytes{1, 2, 7, 0}));
}

TEST(WavStream, BeginsWithWholeSamplesOfAllChannels) {
    TrackDescription pcm = track("audio/raw");
    pcm.sampleRate = 8000;
    pcm.channelCount = 2;
    EXPECT_EQ(written(pcm, {{0, true, {1, 2, 3, 4, 5, 6, 7}}, {1, true, {8, 9, 10, 11}}}),
              (wavHeader(8000, 2, 8) + Bytes{1, 2, 3, 4, 8, 9, 10, 11}));
}

TEST(IvfStream, HasAHeaderForTheFileAndEachFrame) {
    TrackDescription vp8 = track("video/x-vnd.on2.vp8");
    vp8.width = 320;
    vp8.height = 240;
    const Bytes expected = {'D', 'K',  'I',  'F',  0, 0, 32, 0, 'V', 'P', '8', '0', 64, 1, 240,
                            0,   0x40, 0x42, 0x0f, 0, 1, 0,  0, 0,   2,   0,   0,   0,  0, 0,
                            0,   0,    1,    0,    0, 0, 0,  0, 0,   0,   0,   0,   0,  0, 9,  //
                            2,   0,    0,    0,    5, 0, 0,  0, 0,   0,   0,   0,   8,  7};
    EXPECT_EQ(written(vp8, {{0, true, {9}}, {5, false, {8, 7}}}), expected);
}

}  // namespace
}  // namespace ogmprobe
