// SPDX-License-Identifier: Apache-2.0
#include <media/NdkMediaFormat.h>

#include <unistd.h>

#include <string>

#include <android/log.h>

#include "FormatFixture.h"

namespace {

constexpr int kMaxEntries = 256;

constexpr char kAbortText[] =
        "frameworks/av/media/libstagefright/foundation/AMessage.cpp:210 "
        "CHECK(mItems.size() < kMaxNumItems) failed.";

struct Aborted {
    std::string text;
};

std::string gFatalTag;
std::string gFatalText;

class FormatLimitTest : public FormatTest {
  protected:
    FormatLimitTest() {
        for (int i = 0; i < kMaxEntries; ++i) {
            AMediaFormat_setInt32(mFormat, std::to_string(i).c_str(), i);
        }
        __android_log_set_aborter([](const char* text) { throw Aborted{text}; });
        __android_log_set_logger([](const struct __android_log_message* message) {
            EXPECT_EQ(ANDROID_LOG_FATAL, message->priority);
            gFatalTag = message->tag;
            gFatalText = message->message;
        });
    }
    ~FormatLimitTest() override {
        __android_log_set_logger(__android_log_logd_logger);
        __android_log_set_aborter(__android_log_default_aborter);
    }
};

TEST_F(FormatLimitTest, Holds256Entries) {
    int32_t value = 0;
    ASSERT_TRUE(AMediaFormat_getInt32(mFormat, "255", &value));
    EXPECT_EQ(255, value);
}

TEST_F(FormatLimitTest, AFullFormatStillTakesNewValuesForItsNames) {
    AMediaFormat_setInt64(mFormat, "0", 5);
    int64_t value = 0;
    ASSERT_TRUE(AMediaFormat_getInt64(mFormat, "0", &value));
    EXPECT_EQ(5, value);
}

TEST_F(FormatLimitTest, AFullFormatCanBeCopied) {
    AMediaFormat* const to = AMediaFormat_new();
    EXPECT_EQ(AMEDIA_OK, AMediaFormat_copy(to, mFormat));
    EXPECT_EQ(text(), AMediaFormat_toString(to));
    AMediaFormat_delete(to);
}

TEST_F(FormatLimitTest, The257thEntryFailsAnAssertionUnderTheMessageClasssTag) {
    std::string abortText;
    try {
        AMediaFormat_setInt32(mFormat, "256", 256);
    } catch (const Aborted& aborted) {
        abortText = aborted.text;
    }
    EXPECT_EQ(kAbortText, abortText);
    EXPECT_EQ(kAbortText, gFatalText);
    EXPECT_EQ("AMessage", gFatalTag);
}

TEST_F(FormatLimitTest, RoomComesBackWithClear) {
    AMediaFormat_clear(mFormat);
    AMediaFormat_setInt32(mFormat, "256", 256);
    EXPECT_EQ("256: int32(256)}", text());
}

}  // namespace
