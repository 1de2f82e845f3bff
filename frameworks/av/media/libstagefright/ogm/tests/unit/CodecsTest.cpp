// SPDX-License-Identifier: Apache-2.0
#include "stream/Codecs.h"

#include "Format.h"
#include "LogTest.h"
#include "stream/StreamTypes.h"

namespace android::ogm::test {
namespace {

class CodecsTest : public LogTest {
  protected:
    const Format mFormat;
};

TEST_F(CodecsTest, AnUnknownCodecLeavesTheFormatUntouched) {
    EXPECT_EQ(mapVideoCodec(mFormat.get(), 0x58564944), uint32_t{OGM_TYPE_UNKNOWN});
    EXPECT_EQ(mapAudioCodec(mFormat.get(), 0x30303030), uint32_t{OGM_TYPE_UNKNOWN});
    EXPECT_EQ(mFormat.string(AMEDIAFORMAT_KEY_MIME), std::nullopt);
    EXPECT_EQ(mEvents.lines(), (std::vector{errorLine("unknow video codec: 58564944"),
                                            errorLine("unknown audio codec:30303030")}));
}

TEST_F(CodecsTest, ASmallUnknownValueIsPaddedWithBlanks) {
    mapVideoCodec(mFormat.get(), 0x1A);
    mapAudioCodec(mFormat.get(), 0);
    EXPECT_EQ(mEvents.lines(), (std::vector{errorLine("unknow video codec:   1A"),
                                            errorLine("unknown audio codec:   0")}));
}

}  // namespace
}  // namespace android::ogm::test
