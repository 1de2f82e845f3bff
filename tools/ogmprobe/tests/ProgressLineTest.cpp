// SPDX-License-Identifier: Apache-2.0
#include "console/ProgressLine.h"

#include <gtest/gtest.h>

namespace ogmprobe {
namespace {

TEST(ProgressBar, IsFilledByWholePercents) {
    EXPECT_EQ(progressBar(-1), "[                    ]   0 %");
    EXPECT_EQ(progressBar(0.249), "[====                ]  24 %");
    EXPECT_EQ(progressBar(2), "[====================] 100 %");
}

TEST(ProgressText, SaysWhatIsDoneWhereAndForHowLong) {
    EXPECT_EQ(progressText({"opening", 0, 0}, "a.ogm", std::chrono::seconds(1)),
              "[                    ]   0 %  opening a.ogm: 0 B of 0 B, 1 s");
    EXPECT_EQ(progressText({"reading", 500, 1000}, "a.ogm", std::chrono::seconds(12)),
              "[==========          ]  50 %  reading a.ogm: 500 B of 1.0 kB, 12 s");
    EXPECT_EQ(progressText({"reading", 1004, 1000}, "a.ogm", std::chrono::seconds(61)),
              "[====================] 100 %  reading a.ogm: 1.0 kB of 1.0 kB, 61 s");
}

}  // namespace
}  // namespace ogmprobe
