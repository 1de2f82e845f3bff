// SPDX-License-Identifier: Apache-2.0
#include "check/StockDecoders.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>

namespace ogmprobe::check {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

bool plays(const std::string& mime) {
    const DecoderList list = stockDecoders();
    return std::any_of(list.decoders.begin(), list.decoders.end(), [&mime](const Decoder& decoder) {
        return decoder.mime == mime && decoder.unusable.empty();
    });
}

TEST(StockDecodersTest, APhonePlaysWhatIsFreeAndNotWhatIsLicensed) {
    for (const char* mime : {"video/mp4v-es", "video/avc", "video/hevc", "video/x-vnd.on2.vp8",
                             "video/3gpp", "audio/mpeg", "audio/mp4a-latm", "audio/vorbis",
                             "audio/opus", "audio/flac", "audio/raw"}) {
        EXPECT_TRUE(plays(mime)) << mime;
    }
    for (const char* mime :
         {"audio/ac3", "audio/eac3", "audio/vnd.dts", "audio/x-ms-wma", "audio/x-adpcm-ms",
          "video/x-ms-wmv", "video/divx3", "video/divx", "video/x-motion-jpeg", "video/mpeg2"}) {
        EXPECT_FALSE(plays(mime)) << mime;
    }
}

TEST(StockDecodersTest, EachDecoderDeclaresWhatCanBeRead) {
    const DecoderList list = stockDecoders();
    EXPECT_GT(list.decoders.size(), 10U);
    for (const Decoder& decoder : list.decoders) {
        const DecoderLimits& limits = decoder.limits;
        EXPECT_TRUE(limits.maxSize || !limits.channelCount.empty() || !limits.sampleRate.empty())
                << decoder.name;
    }
}

TEST(StockDecodersTest, ProfilesAreKnownOfAndroidsOwnDecoders) {
    EXPECT_THAT(profilesOf("c2.android.mpeg4.decoder"), ElementsAre("Simple"));
    EXPECT_THAT(profilesOf("c2.android.avc.decoder"), ElementsAre("Baseline", "Main", "High"));
    EXPECT_THAT(profilesOf("c2.maker.mpeg4.decoder"), IsEmpty());
}

}  // namespace
}  // namespace ogmprobe::check
