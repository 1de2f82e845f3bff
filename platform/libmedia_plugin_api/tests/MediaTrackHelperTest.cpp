// SPDX-License-Identifier: Apache-2.0
#include <media/MediaExtractorPluginHelper.h>

#include <stdlib.h>

#include <gtest/gtest.h>

#include "FakeBuffer.h"
#include "FakeBufferGroup.h"
#include "FakeTrack.h"

using android::CMediaBuffer;
using android::CMediaTrack;
using android::MediaTrackHelper;
using android::wrap;

#ifdef __LP64__
static_assert(sizeof(MediaTrackHelper) == 16);
#endif

namespace {

constexpr uint32_t kSeekClosest = 8 | 3;
constexpr uint32_t kNonBlocking = 16;

class MediaTrackHelperTest : public testing::Test {
  protected:
    ~MediaTrackHelperTest() override {
        if (!mRecord.deleted) {
            mTable->free(mTable->data);
        }
        free(mTable);
    }

    FakeBuffer mBuffer;
    FakeBufferGroup mGroup;
    FakeTrack::Record mRecord;
    FakeTrack* const mTrack = new FakeTrack(&mRecord);
    CMediaTrack* const mTable = wrap(mTrack);
};

TEST_F(MediaTrackHelperTest, ATrackHasNoGroupAtFirst) {
    EXPECT_EQ(nullptr, mTrack->group());
}

TEST_F(MediaTrackHelperTest, WrappingNullGivesNull) {
    EXPECT_EQ(nullptr, wrap(static_cast<MediaTrackHelper*>(nullptr)));
}

TEST_F(MediaTrackHelperTest, TheTableHoldsTheTrack) {
    EXPECT_EQ(mTrack, mTable->data);
}

TEST_F(MediaTrackHelperTest, FreeDeletesTheTrackWithoutStoppingIt) {
    mTable->start(mTable->data, mGroup.table());
    mTable->free(mTable->data);
    EXPECT_TRUE(mRecord.deleted);
    EXPECT_EQ(0, mRecord.stops);
}

TEST_F(MediaTrackHelperTest, TheGroupHelperOutlivesTheDerivedDestructor) {
    mTable->start(mTable->data, mGroup.table());
    mTable->free(mTable->data);
    EXPECT_TRUE(mRecord.groupWasSetAtDeletion);
}

TEST_F(MediaTrackHelperTest, StartMakesAHelperOfTheGroupBeforeTheTrackIsStarted) {
    EXPECT_EQ(AMEDIA_OK, mTable->start(mTable->data, mGroup.table()));
    ASSERT_NE(nullptr, mTrack->groupAtStart);
    EXPECT_EQ(mTrack->groupAtStart, mTrack->group());
    mTrack->group()->add_buffer(123);
    EXPECT_EQ(123U, mGroup.addedSize);
}

TEST_F(MediaTrackHelperTest, TheGroupHelperStaysWhenStartFails) {
    mTrack->startResult = AMEDIA_ERROR_UNSUPPORTED;
    EXPECT_EQ(AMEDIA_ERROR_UNSUPPORTED, mTable->start(mTable->data, mGroup.table()));
    EXPECT_NE(nullptr, mTrack->group());
}

TEST_F(MediaTrackHelperTest, ASecondStartReplacesTheGroupHelper) {
    FakeBufferGroup secondGroup;
    mTable->start(mTable->data, mGroup.table());
    mTable->start(mTable->data, secondGroup.table());
    mTrack->group()->add_buffer(7);
    EXPECT_EQ(0U, mGroup.addedSize);
    EXPECT_EQ(7U, secondGroup.addedSize);
}

TEST_F(MediaTrackHelperTest, StopForwards) {
    mTrack->stopResult = AMEDIA_ERROR_IO;
    EXPECT_EQ(AMEDIA_ERROR_IO, mTable->stop(mTable->data));
    EXPECT_EQ(1, mRecord.stops);
}

TEST_F(MediaTrackHelperTest, GetFormatForwards) {
    AMediaFormat* const format = AMediaFormat_new();
    mTrack->formatResult = AMEDIA_ERROR_MALFORMED;
    EXPECT_EQ(AMEDIA_ERROR_MALFORMED, mTable->getFormat(mTable->data, format));
    EXPECT_EQ(format, mTrack->formatAsked);
    AMediaFormat_delete(format);
}

TEST_F(MediaTrackHelperTest, NonBlockingReadsAreNotSupportedByDefault) {
    EXPECT_FALSE(mTable->supportsNonBlockingRead(mTable->data));
}

TEST_F(MediaTrackHelperTest, SupportForNonBlockingReadsForwards) {
    struct NonBlockingTrack : FakeTrack {
        using FakeTrack::FakeTrack;
        bool supportsNonBlockingRead() override { return true; }
    };
    FakeTrack::Record record;
    CMediaTrack* const table = wrap(new NonBlockingTrack(&record));
    EXPECT_TRUE(table->supportsNonBlockingRead(table->data));
    table->free(table->data);
    free(table);
}

TEST_F(MediaTrackHelperTest, ReadGivesTheBufferItself) {
    mGroup.acquiredBuffer = mBuffer.table();
    mTable->start(mTable->data, mGroup.table());
    CMediaBuffer* buffer = nullptr;
    EXPECT_EQ(AMEDIA_OK, mTable->read(mTable->data, &buffer, 0, 0));
    EXPECT_EQ(mBuffer.table(), buffer);
    EXPECT_EQ(0, mBuffer.releases);
}

TEST_F(MediaTrackHelperTest, ReadHandsOnOptionsAndAnEmptySlot) {
    mGroup.acquiredBuffer = mBuffer.table();
    mTable->start(mTable->data, mGroup.table());
    CMediaBuffer* buffer = mBuffer.table();
    mTable->read(mTable->data, &buffer, kSeekClosest | kNonBlocking, 12345);
    EXPECT_EQ(nullptr, mTrack->slotAtRead);
    EXPECT_TRUE(mTrack->didSeek);
    EXPECT_EQ(12345, mTrack->seekTimeUs);
    EXPECT_EQ(MediaTrackHelper::ReadOptions::SEEK_CLOSEST, mTrack->seekMode);
    EXPECT_TRUE(mTrack->wasNonBlocking);
}

TEST_F(MediaTrackHelperTest, ReadGivesOptionsEvenWhenNoneAreSet) {
    mTrack->acquires = false;
    CMediaBuffer* buffer = nullptr;
    mTable->read(mTable->data, &buffer, 0, 0);
    EXPECT_FALSE(mTrack->optionsWereNull);
    EXPECT_FALSE(mTrack->didSeek);
    EXPECT_FALSE(mTrack->wasNonBlocking);
}

TEST_F(MediaTrackHelperTest, AFailedReadDoesNotWriteTheBuffer) {
    FakeBuffer marker;
    mGroup.acquiredBuffer = mBuffer.table();
    mTable->start(mTable->data, mGroup.table());
    mTrack->readResult = AMEDIA_ERROR_END_OF_STREAM;
    CMediaBuffer* buffer = marker.table();
    EXPECT_EQ(AMEDIA_ERROR_END_OF_STREAM, mTable->read(mTable->data, &buffer, 0, 0));
    EXPECT_EQ(marker.table(), buffer);
}

TEST_F(MediaTrackHelperTest, AReadWithoutBufferDoesNotWriteTheBuffer) {
    FakeBuffer marker;
    mTrack->acquires = false;
    CMediaBuffer* buffer = marker.table();
    EXPECT_EQ(AMEDIA_OK, mTable->read(mTable->data, &buffer, 0, 0));
    EXPECT_EQ(marker.table(), buffer);
}

}  // namespace
