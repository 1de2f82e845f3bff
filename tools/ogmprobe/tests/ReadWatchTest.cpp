// SPDX-License-Identifier: Apache-2.0
#include "plugin/ReadWatch.h"

#include <gtest/gtest.h>

namespace ogmprobe {
namespace {

class ReadWatchTest : public testing::Test {
  protected:
    ReadWatchTest() {
        sCycles = 0;
        ReadWatch::beginCall();
        ReadWatch::onCycle([](const ReadWatch::Cycle&) { ++sCycles; }, kAtOnce);
    }
    ~ReadWatchTest() override {
        ReadWatch::onCycle(nullptr, 0);
        ReadWatch::endRun();
    }

    /** A search for a page, a log line, and the page's header. */
    static void search(int64_t from) {
        constexpr int64_t kPage = 5000;
        for (int64_t offset = from; offset <= kPage; ++offset) {
            ReadWatch::add(offset, 4, 4);
        }
        ReadWatch::endRun();
        ReadWatch::add(kPage, 27, 27);
        ReadWatch::add(kPage + 27, 3, 3);
    }

    static constexpr double kAtOnce = 1e-9;
    static inline int sCycles = 0;
};

TEST_F(ReadWatchTest, NoticesReadsThatRepeatThemselvesWithLogLinesBetween) {
    for (int i = 0; i < 1000; ++i) {
        search(100);
    }
    EXPECT_GT(sCycles, 0);
}

TEST_F(ReadWatchTest, TakesSearchesFromOtherPlacesForProgressThoughTheyFindTheSamePage) {
    for (int64_t from = 100; from < 1100; ++from) {
        search(from);
    }
    EXPECT_EQ(sCycles, 0);
}

}  // namespace
}  // namespace ogmprobe
