// SPDX-License-Identifier: Apache-2.0
#include "PlanList.h"

#include <gtest/gtest.h>

#include <set>
#include <string>

namespace android::ogm::trace {
namespace {

PlanList::Settings madeUp(size_t count, uint64_t seed = 0) {
    PlanList::Settings settings;
    settings.generated = count;
    settings.seed = seed;
    return settings;
}

TEST(PlanListTest, ASessionIsTheSameEachTimeAndInEachList) {
    const PlanList few(madeUp(10));
    const PlanList many(madeUp(50));
    for (size_t i = 0; i < few.size(); ++i) {
        const Plan plan = few.plan(i);
        EXPECT_EQ(plan.file, few.plan(i).file);
        EXPECT_EQ(plan.file, many.plan(i).file);
        EXPECT_EQ(plan.name, many.plan(i).name);
        EXPECT_EQ(plan.steps.size(), many.plan(i).steps.size());
    }
}

TEST(PlanListTest, AnotherSeedGivesOtherSessions) {
    EXPECT_NE(PlanList(madeUp(1, 1)).plan(0).file, PlanList(madeUp(1, 2)).plan(0).file);
}

TEST(PlanListTest, TheSessionsHaveEveryThemeFaultAndDamage) {
    const PlanList list(madeUp(300));
    std::set<std::string> names;
    size_t faults = 0;
    size_t odd = 0;
    size_t refusing = 0;
    size_t dumping = 0;
    for (size_t i = 0; i < list.size(); ++i) {
        const Plan plan = list.plan(i);
        names.insert(plan.name);
        faults += plan.faults.empty() ? 0 : 1;
        odd += plan.size.stored == static_cast<int64_t>(plan.file.size()) ? 0 : 1;
        refusing += plan.groupFault.count > 0 ? 1 : 0;
        dumping += plan.dumpAudio ? 1 : 0;
    }
    for (const char* const theme : {"mixed calls", "seeks", "stops", "freed after a restart",
                                    "extractor first", "held buffers", "formats"}) {
        EXPECT_TRUE(names.count(std::string("small file, ") + theme)) << theme;
        EXPECT_TRUE(names.count(std::string("small file, damaged, ") + theme)) << theme;
    }
    EXPECT_TRUE(names.count("file with a long queue, waiting track"));
    EXPECT_GT(faults, 40U);
    EXPECT_GT(odd, 5U);
    EXPECT_GT(refusing, 10U);
    EXPECT_GT(dumping, 5U);
}

TEST(PlanListTest, ASampleIsPlayedWholeAndInEveryTheme) {
    PlanList::Settings settings;
    settings.samples = OGM_SAMPLES;
    const PlanList list(settings);
    EXPECT_EQ(99U, list.size());
    EXPECT_EQ("divx3_pcm16.ogm, played", list.plan(0).name);
    EXPECT_EQ(260004U, list.plan(8).file.size());
}

TEST(PlanListTest, AnInputOfTheFuzzTargetBecomesItsCalls) {
    PlanList::Settings settings;
    settings.corpora = {OGM_FINDINGS};
    const PlanList list(settings);
    ASSERT_LT(0U, list.size());
    for (size_t i = 0; i < list.size(); ++i) {
        EXPECT_FALSE(list.plan(i).steps.empty());
        EXPECT_FALSE(list.plan(i).file.empty());
    }
}

}  // namespace
}  // namespace android::ogm::trace
