// SPDX-License-Identifier: Apache-2.0
// The order of virtual functions, as the C++ ABI of the platform's compilers encodes it in pointers
// to members.
#include <media/MediaExtractorPluginHelper.h>

#include <stdint.h>
#include <string.h>

#include <gtest/gtest.h>

using android::DataSourceHelper;
using android::MediaBufferHelper;
using android::MediaExtractorPluginHelper;
using android::MediaTrackHelper;

namespace {

/** The index of a virtual function in its class's table. A virtual destructor takes two entries. */
template <typename Function>
size_t slotOf(Function function) {
    uintptr_t word = 0;
    memcpy(&word, &function, sizeof word);
    // Some processors mark a virtual function by the lowest bit, others by another word.
    return (word & ~uintptr_t{1}) / sizeof(void*);
}

TEST(VirtualSlotsTest, OfABufferHelper) {
    EXPECT_EQ(2U, slotOf(&MediaBufferHelper::release));
    EXPECT_EQ(3U, slotOf(&MediaBufferHelper::data));
    EXPECT_EQ(4U, slotOf(&MediaBufferHelper::size));
    EXPECT_EQ(5U, slotOf(&MediaBufferHelper::range_offset));
    EXPECT_EQ(6U, slotOf(&MediaBufferHelper::range_length));
    EXPECT_EQ(7U, slotOf(&MediaBufferHelper::set_range));
    EXPECT_EQ(8U, slotOf(&MediaBufferHelper::meta_data));
}

TEST(VirtualSlotsTest, OfATrackHelper) {
    EXPECT_EQ(2U, slotOf(&MediaTrackHelper::start));
    EXPECT_EQ(3U, slotOf(&MediaTrackHelper::stop));
    EXPECT_EQ(4U, slotOf(&MediaTrackHelper::getFormat));
    EXPECT_EQ(5U, slotOf(&MediaTrackHelper::read));
    EXPECT_EQ(6U, slotOf(&MediaTrackHelper::supportsNonBlockingRead));
}

TEST(VirtualSlotsTest, OfAnExtractorHelper) {
    EXPECT_EQ(2U, slotOf(&MediaExtractorPluginHelper::countTracks));
    EXPECT_EQ(3U, slotOf(&MediaExtractorPluginHelper::getTrack));
    EXPECT_EQ(4U, slotOf(&MediaExtractorPluginHelper::getTrackMetaData));
    EXPECT_EQ(5U, slotOf(&MediaExtractorPluginHelper::getMetaData));
    EXPECT_EQ(6U, slotOf(&MediaExtractorPluginHelper::flags));
    EXPECT_EQ(7U, slotOf(&MediaExtractorPluginHelper::setMediaCas));
    EXPECT_EQ(8U, slotOf(&MediaExtractorPluginHelper::name));
}

TEST(VirtualSlotsTest, OfADataSourceHelper) {
    EXPECT_EQ(2U, slotOf(&DataSourceHelper::readAt));
    EXPECT_EQ(3U, slotOf(&DataSourceHelper::getSize));
    EXPECT_EQ(4U, slotOf(&DataSourceHelper::flags));
}

}  // namespace
