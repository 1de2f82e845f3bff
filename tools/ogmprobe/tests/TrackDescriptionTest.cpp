// SPDX-License-Identifier: Apache-2.0
#include "plugin/TrackDescription.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <media/NdkMediaFormat.h>
#include <nlohmann/json.hpp>

#include "plugin/Format.h"
#include "plugin/TrackJson.h"

namespace ogmprobe {
namespace {

using testing::_;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

Format videoFormat(int32_t width, int32_t height) {
    Format format;
    AMediaFormat_setString(format.get(), "mime", "video/avc");
    AMediaFormat_setInt32(format.get(), "width", width);
    AMediaFormat_setInt32(format.get(), "height", height);
    return format;
}

Format audioFormat(int32_t channels) {
    Format format;
    AMediaFormat_setString(format.get(), "mime", "audio/mpeg-L1");
    AMediaFormat_setInt32(format.get(), "sample-rate", 48000);
    AMediaFormat_setInt32(format.get(), "channel-count", channels);
    return format;
}

TEST(TrackDescription, TakesThePictureAndItsRate) {
    Format format = videoFormat(176, 144);
    AMediaFormat_setInt32(format.get(), "frame-rate", 25);
    AMediaFormat_setInt64(format.get(), "durationUs", 90000000);
    const TrackDescription track = describeTrack(1, format);
    EXPECT_EQ(track.index, 1U);
    EXPECT_EQ(track.kind, TrackKind::kVideo);
    EXPECT_EQ(track.codec.name, "H.264");
    EXPECT_EQ(track.durationUs, 90000000);
    EXPECT_EQ(formatText(track), "176x144, 25 fps");
}

TEST(TrackDescription, TakesRateChannelsAndLayerOfAudio) {
    Format format = audioFormat(1);
    AMediaFormat_setInt32(format.get(), "mpeg-aud-layer", 2);
    const TrackDescription track = describeTrack(0, format);
    EXPECT_EQ(track.kind, TrackKind::kAudio);
    EXPECT_EQ(track.mpegAudioLayer, 2);
    EXPECT_EQ(track.codec.name, "MP2 (MPEG audio layer 2)");
    EXPECT_EQ(formatText(track), "48000 Hz, 1 channel");
    EXPECT_EQ(formatText(describeTrack(0, audioFormat(2))), "48000 Hz, 2 channels");
}

TEST(TrackDescription, TreatsValuesOfAnotherTypeAsAbsent) {
    Format format = videoFormat(176, 144);
    AMediaFormat_setInt64(format.get(), "width", 176);
    AMediaFormat_setInt32(format.get(), "durationUs", 5);
    const TrackDescription track = describeTrack(0, format);
    EXPECT_EQ(track.width, std::nullopt);
    EXPECT_EQ(track.durationUs, std::nullopt);
    EXPECT_EQ(formatText(track), "?x144, ? fps");
}

TEST(TrackDescription, HasNullsInJsonForAbsentValues) {
    const auto json = toJson(describeTrack(3, videoFormat(176, 144)));
    EXPECT_EQ(json["index"], 3);
    EXPECT_EQ(json["width"], 176);
    EXPECT_TRUE(json["sample_rate"].is_null());
    EXPECT_TRUE(json["duration_us"].is_null());
    EXPECT_TRUE(json["esds"].is_null());
}

TEST(TrackDescription, DecodesTheEsds) {
    const std::vector<uint8_t> esds = {3, 28, 0, 0, 0, 4, 23, 0x40, 0, 0, 0, 0, 0, 0, 0,
                                       0, 0,  0, 0, 0, 5, 8,  0,    0, 1, 0, 0, 0, 1, 0x20};
    Format format = videoFormat(176, 144);
    AMediaFormat_setBuffer(format.get(), "esds", esds.data(), esds.size());
    const TrackDescription track = describeTrack(0, format);
    const auto json = toJson(track)["esds"];
    EXPECT_EQ(json["valid"], true);
    EXPECT_EQ(json["tags"], nlohmann::ordered_json({3, 4, 5}));
    EXPECT_EQ(json["object_type_indication"], 0x40);
    EXPECT_EQ(json["decoder_specific_info"], "0000010000000120");
    EXPECT_EQ(json["video_object_layer"], "00000120");
    EXPECT_THAT(esdsLines(esds),
                ElementsAre("tags 0x03 0x04 0x05, ES_ID 0, flags 0x00",
                            HasSubstr("object type 0x40 (MPEG-4 audio)"),
                            "decoder specific info, 8 bytes: 00 00 01 00 00 00 01 20",
                            "video object layer, 4 bytes: 00 00 01 20"));
}

TEST(TrackDescription, ShowsAVideoObjectLayerOnceWhenThereIsNothingElse) {
    EXPECT_THAT(esdsLines({3, 24, 0, 0, 0, 4, 19, 0x40, 0, 0, 0, 0, 0,
                           0, 0,  0, 0, 0, 0, 0,  5,    4, 0, 0, 1, 0x20}),
                ElementsAre(_, _,
                            "decoder specific info (a video object layer), 4 bytes: 00 00 01 20"));
}

TEST(TrackDescription, SaysWhenTheEsdsIsDamaged) {
    EXPECT_THAT(esdsLines({3, 9}), ElementsAre("not a whole ES descriptor"));
}

TEST(TrackDescription, ComplainsAboutFormatsThatClientsDoNotTake) {
    EXPECT_THAT(complaints(describeTrack(0, videoFormat(176, 144))), IsEmpty());
    EXPECT_THAT(complaints(describeTrack(0, audioFormat(0))), IsEmpty());
    EXPECT_THAT(complaints(describeTrack(0, videoFormat(176, 0))),
                ElementsAre(HasSubstr("no picture size")));
    EXPECT_THAT(complaints(describeTrack(0, audioFormat(-1))),
                ElementsAre(HasSubstr("no sample rate")));
    EXPECT_THAT(complaints(describeTrack(0, Format())), ElementsAre(HasSubstr("no MIME type")));
}

}  // namespace
}  // namespace ogmprobe
