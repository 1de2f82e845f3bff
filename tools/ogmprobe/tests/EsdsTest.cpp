// SPDX-License-Identifier: Apache-2.0
#include "codecs/Esds.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

namespace ogmprobe {
namespace {

using testing::ElementsAre;
using Bytes = std::vector<uint8_t>;

// Sizes in two bytes each, as the extractor writes them; two bytes of configuration.
const Bytes kEsds = {0x03, 0x80, 0x18,                                // ES descriptor
                     0x00, 0x07, 0x00,                                // ES_ID, flags
                     0x04, 0x80, 0x12,                                // decoder configuration
                     0x40, 0x15, 0x00, 0x01, 0x02,                    // types, buffer size
                     0x00, 0x00, 0x00, 0x09, 0x00, 0x00, 0x00, 0x08,  // bitrates
                     0x05, 0x80, 0x02, 0xab, 0xcd};                   // decoder specific info

TEST(EsDescriptor, YieldsItsFieldsAndTags) {
    const auto es = parseEsDescriptor(kEsds);
    ASSERT_TRUE(es);
    EXPECT_THAT(es->tags, ElementsAre(3, 4, 5));
    EXPECT_EQ(es->esId, 7);
    EXPECT_EQ(es->flags, 0);
    ASSERT_TRUE(es->decoderConfig);
    EXPECT_EQ(es->decoderConfig->objectTypeIndication, 0x40);
    EXPECT_EQ(es->decoderConfig->streamType, 5);
    EXPECT_FALSE(es->decoderConfig->upStream);
    EXPECT_EQ(es->decoderConfig->bufferSizeDb, 0x102U);
    EXPECT_EQ(es->decoderConfig->maxBitrate, 9U);
    EXPECT_EQ(es->decoderConfig->avgBitrate, 8U);
    ASSERT_TRUE(es->decoderConfig->decoderSpecificInfo);
    EXPECT_THAT(*es->decoderConfig->decoderSpecificInfo, ElementsAre(0xab, 0xcd));
}

TEST(EsDescriptor, IsRefusedWhenCutAnywhere) {
    for (size_t size = 0; size < kEsds.size(); ++size) {
        EXPECT_FALSE(parseEsDescriptor(Bytes(kEsds.begin(), kEsds.begin() + size))) << size;
    }
}

TEST(EsDescriptor, IsRefusedWhenAnInnerDescriptorReachesTooFar) {
    Bytes bytes = kEsds;
    bytes[24] = 0x03;  // the decoder specific info's size
    EXPECT_FALSE(parseEsDescriptor(bytes));
}

TEST(EsDescriptor, IsRefusedUnderAnotherTag) {
    Bytes bytes = kEsds;
    bytes[0] = 0x04;
    EXPECT_FALSE(parseEsDescriptor(bytes));
}

TEST(EsDescriptor, ReadsSizesOfOneToFourBytesAndNoLonger) {
    EXPECT_TRUE(parseEsDescriptor(Bytes{3, 3, 0, 1, 0}));
    EXPECT_TRUE(parseEsDescriptor(Bytes{3, 0x80, 0x80, 0x80, 3, 0, 1, 0}));
    EXPECT_FALSE(parseEsDescriptor(Bytes{3, 0x80, 0x80, 0x80, 0x80, 3, 0, 1, 0}));
}

TEST(EsDescriptor, PassesOverTheOptionalFields) {
    const auto es = parseEsDescriptor(
            Bytes{3, 16, 0, 1, 0xe0, 0, 2, 3, 'u', 'r', 'l', 0, 3, 6, 3, 9, 9, 9});
    ASSERT_TRUE(es);
    EXPECT_THAT(es->tags, ElementsAre(3, 6));
}

TEST(EsDescriptor, HasTheDirectionBesideTheTypeOfTheStream) {
    Bytes bytes = kEsds;
    bytes[10] = 0x13;
    const auto es = parseEsDescriptor(bytes);
    ASSERT_TRUE(es && es->decoderConfig);
    EXPECT_EQ(es->decoderConfig->streamType, 4);
    EXPECT_TRUE(es->decoderConfig->upStream);
}

TEST(EsDescriptor, HasEachByteOfItsNumbers) {
    Bytes bytes = kEsds;
    for (size_t i = 3; i < 5; ++i) {
        bytes[i] = static_cast<uint8_t>(i);
    }
    for (size_t i = 11; i < 22; ++i) {
        bytes[i] = static_cast<uint8_t>(0xa0 + i);
    }
    const auto es = parseEsDescriptor(bytes);
    ASSERT_TRUE(es && es->decoderConfig);
    EXPECT_EQ(es->esId, 0x0304);
    EXPECT_EQ(es->decoderConfig->bufferSizeDb, 0xabacadU);
    EXPECT_EQ(es->decoderConfig->maxBitrate, 0xaeafb0b1U);
    EXPECT_EQ(es->decoderConfig->avgBitrate, 0xb2b3b4b5U);
}

TEST(EsDescriptor, PassesOverEachOptionalFieldAlone) {
    EXPECT_THAT(parseEsDescriptor(Bytes{3, 7, 0, 1, 0x80, 4, 1, 6, 0})->tags, ElementsAre(3, 6));
    EXPECT_THAT(parseEsDescriptor(Bytes{3, 8, 0, 1, 0x40, 2, 4, 1, 6, 0})->tags, ElementsAre(3, 6));
    EXPECT_THAT(parseEsDescriptor(Bytes{3, 7, 0, 1, 0x20, 4, 1, 6, 0})->tags, ElementsAre(3, 6));
    EXPECT_THAT(parseEsDescriptor(Bytes{3, 5, 0, 1, 0x1f, 6, 0})->tags, ElementsAre(3, 6));
}

TEST(ObjectTypeName, KnowsTheTypesOfTheStandard) {
    const std::vector<std::pair<uint8_t, std::string>> names = {
            {0x00, "unknown"},      {0x20, "MPEG-4 Part 2 video"},
            {0x21, "H.264"},        {0x40, "MPEG-4 audio"},
            {0x60, "MPEG-2 video"}, {0x61, "MPEG-2 video"},
            {0x69, "MPEG-2 audio"}, {0x6a, "MPEG-1 video"},
            {0x6b, "MPEG-1 audio"}, {0x6c, "JPEG"},
            {0xff, "unknown"}};
    for (const auto& [value, name] : names) {
        EXPECT_EQ(objectTypeName(value), name) << int{value};
    }
}

}  // namespace
}  // namespace ogmprobe
