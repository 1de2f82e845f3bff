// SPDX-License-Identifier: Apache-2.0
#include "MediaStatus.h"

#include <android/log.h>
#include <gtest/gtest.h>
#include <media/stagefright/MediaErrors.h>

#include "LogCapture.h"

using android::toMediaStatus;

namespace {

TEST(MediaStatus, CounterpartsAreTranslatedSilently) {
    LogCapture log;
    EXPECT_EQ(toMediaStatus(android::OK), AMEDIA_OK);
    EXPECT_EQ(toMediaStatus(android::ERROR_END_OF_STREAM), AMEDIA_ERROR_END_OF_STREAM);
    EXPECT_EQ(toMediaStatus(android::ERROR_IO), AMEDIA_ERROR_IO);
    EXPECT_EQ(toMediaStatus(android::ERROR_MALFORMED), AMEDIA_ERROR_MALFORMED);
    EXPECT_EQ(toMediaStatus(android::INVALID_OPERATION), AMEDIA_ERROR_INVALID_OPERATION);
    EXPECT_EQ(toMediaStatus(android::UNKNOWN_ERROR), AMEDIA_ERROR_UNKNOWN);
    EXPECT_TRUE(log.lines().empty());
}

TEST(MediaStatus, AnyOtherStatusBecomesTheUnknownErrorWithAnErrorLine) {
    for (android::status_t status : {-11, -12, -1010, 1}) {
        LogCapture log;
        EXPECT_EQ(toMediaStatus(status), AMEDIA_ERROR_UNKNOWN);
        ASSERT_EQ(log.lines().size(), 1U);
        EXPECT_EQ(log.lines()[0].priority, ANDROID_LOG_ERROR);
        EXPECT_EQ(log.lines()[0].message,
                  "status " + std::to_string(status) +
                          " has no media status, reported as unknown error");
    }
}

}  // namespace
