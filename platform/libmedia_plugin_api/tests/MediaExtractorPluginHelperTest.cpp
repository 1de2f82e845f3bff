// SPDX-License-Identifier: Apache-2.0
#include <media/MediaExtractorPluginHelper.h>

#include <stdlib.h>

#include <type_traits>

#include <gtest/gtest.h>

#include "FakeTrack.h"

using android::CMediaExtractor;
using android::CMediaTrack;
using android::MediaExtractorPluginHelper;
using android::MediaTrackHelper;
using android::wrap;

#ifdef __LP64__
static_assert(sizeof(MediaExtractorPluginHelper) == 8);
#endif
static_assert(!std::is_copy_constructible_v<MediaExtractorPluginHelper>);
static_assert(!std::is_copy_assignable_v<MediaExtractorPluginHelper>);
static_assert(MediaExtractorPluginHelper::kIncludeExtensiveMetaData == 1);
static_assert(MediaExtractorPluginHelper::CAN_SEEK_BACKWARD == 1);
static_assert(MediaExtractorPluginHelper::CAN_SEEK_FORWARD == 2);
static_assert(MediaExtractorPluginHelper::CAN_PAUSE == 4);
static_assert(MediaExtractorPluginHelper::CAN_SEEK == 8);

namespace {

/** Overrides only what has no default. */
class PlainExtractor : public MediaExtractorPluginHelper {
  public:
    explicit PlainExtractor(bool* deleted) : mDeleted(deleted) {}
    ~PlainExtractor() override { *mDeleted = true; }

    size_t countTracks() override { return 2; }
    MediaTrackHelper* getTrack(size_t index) override {
        indexAsked = index;
        return track;
    }
    media_status_t getTrackMetaData(AMediaFormat* meta, size_t index, uint32_t flags) override {
        metaAsked = meta;
        indexAsked = index;
        flagsAsked = flags;
        return AMEDIA_ERROR_MALFORMED;
    }
    media_status_t getMetaData(AMediaFormat* meta) override {
        metaAsked = meta;
        return AMEDIA_ERROR_IO;
    }

    MediaTrackHelper* track = nullptr;
    AMediaFormat* metaAsked = nullptr;
    size_t indexAsked = 0;
    uint32_t flagsAsked = 99;

  private:
    bool* const mDeleted;
};

class FullExtractor : public PlainExtractor {
  public:
    using PlainExtractor::PlainExtractor;
    uint32_t flags() const override { return CAN_PAUSE; }
    media_status_t setMediaCas(const uint8_t* casToken, size_t size) override {
        tokenGiven = casToken;
        tokenSize = size;
        return AMEDIA_OK;
    }
    const char* name() override { return "full"; }

    const uint8_t* tokenGiven = nullptr;
    size_t tokenSize = 0;
};

class MediaExtractorPluginHelperTest : public testing::Test {
  protected:
    ~MediaExtractorPluginHelperTest() override {
        if (!mDeleted) {
            mTable->free(mTable->data);
        }
        free(mTable);
        AMediaFormat_delete(mFormat);
    }

    bool mDeleted = false;
    PlainExtractor* const mExtractor = new PlainExtractor(&mDeleted);
    CMediaExtractor* const mTable = wrap(mExtractor);
    AMediaFormat* const mFormat = AMediaFormat_new();
};

TEST_F(MediaExtractorPluginHelperTest, TheTableHoldsTheExtractor) {
    EXPECT_EQ(static_cast<MediaExtractorPluginHelper*>(mExtractor), mTable->data);
}

TEST_F(MediaExtractorPluginHelperTest, FreeDeletesTheExtractor) {
    mTable->free(mTable->data);
    EXPECT_TRUE(mDeleted);
}

TEST_F(MediaExtractorPluginHelperTest, TheDefaultsAreAllFlagsNoCasAndNoName) {
    EXPECT_EQ(15U, mTable->flags(mTable->data));
    EXPECT_EQ(AMEDIA_ERROR_INVALID_OPERATION, mTable->setMediaCas(mTable->data, nullptr, 0));
    EXPECT_STREQ("<unspecified>", mTable->name(mTable->data));
}

TEST_F(MediaExtractorPluginHelperTest, CountTracksForwards) {
    EXPECT_EQ(2U, mTable->countTracks(mTable->data));
}

TEST_F(MediaExtractorPluginHelperTest, GetTrackWrapsTheTrack) {
    FakeTrack::Record record;
    mExtractor->track = new FakeTrack(&record);
    CMediaTrack* const track = mTable->getTrack(mTable->data, 5);
    ASSERT_NE(nullptr, track);
    EXPECT_EQ(5U, mExtractor->indexAsked);
    EXPECT_EQ(mExtractor->track, track->data);
    track->free(track->data);
    free(track);
    EXPECT_TRUE(record.deleted);
}

TEST_F(MediaExtractorPluginHelperTest, AMissingTrackIsNull) {
    EXPECT_EQ(nullptr, mTable->getTrack(mTable->data, 9));
}

TEST_F(MediaExtractorPluginHelperTest, TheMetaDataFunctionsForward) {
    EXPECT_EQ(AMEDIA_ERROR_MALFORMED, mTable->getTrackMetaData(mTable->data, mFormat, 3, 1));
    EXPECT_EQ(mFormat, mExtractor->metaAsked);
    EXPECT_EQ(3U, mExtractor->indexAsked);
    EXPECT_EQ(1U, mExtractor->flagsAsked);
    mExtractor->metaAsked = nullptr;
    EXPECT_EQ(AMEDIA_ERROR_IO, mTable->getMetaData(mTable->data, mFormat));
    EXPECT_EQ(mFormat, mExtractor->metaAsked);
}

TEST_F(MediaExtractorPluginHelperTest, TrackMetaDataHasNoFlagsByDefault) {
    static_cast<MediaExtractorPluginHelper*>(mExtractor)->getTrackMetaData(mFormat, 0);
    EXPECT_EQ(0U, mExtractor->flagsAsked);
}

TEST_F(MediaExtractorPluginHelperTest, OverriddenDefaultsForward) {
    bool deleted = false;
    auto* const extractor = new FullExtractor(&deleted);
    CMediaExtractor* const table = wrap(extractor);
    const uint8_t token[3] = {};
    EXPECT_EQ(4U, table->flags(table->data));
    EXPECT_EQ(AMEDIA_OK, table->setMediaCas(table->data, token, sizeof token));
    EXPECT_EQ(token, extractor->tokenGiven);
    EXPECT_EQ(3U, extractor->tokenSize);
    EXPECT_STREQ("full", table->name(table->data));
    table->free(table->data);
    free(table);
    EXPECT_TRUE(deleted);
}

}  // namespace
