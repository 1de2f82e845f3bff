// SPDX-License-Identifier: Apache-2.0
#include "audio/OgmEsQueue.h"

#include <set>

#include "LogTest.h"

namespace android::ogm::test::ogm_es_queue_test {
namespace {

class OgmEsQueueTest : public LogTest {};

TEST_F(OgmEsQueueTest, MostStreamTypesHaveAQueue) {
    const std::set<uint32_t> typesWithQueue{1,  2,  3,  4,  5,  6,  7,  8, 9,
                                            16, 18, 19, 22, 23, 24, 25, 26};
    for (uint32_t type = 0; type < 300; ++type) {
        EXPECT_EQ(hasEsQueue(type), typesWithQueue.count(type) > 0) << type;
    }
    EXPECT_FALSE(hasEsQueue(0xFFFFFFFF));
}

TEST_F(OgmEsQueueTest, ThatOfMpegAudioIsLoggedAsAnErrorUnderItsOwnTag) {
    for (uint32_t type = 0; type < 300; ++type) {
        setUpEsQueue(type);
    }
    const LogLine line{ANDROID_LOG_ERROR, "OgmEsqueue", "set  mDequeueMpegAudioOgm :1\n"};
    EXPECT_EQ(mEvents.lines(), (std::vector{line, line}));
    mEvents.clear();
    setUpEsQueue(1);
    setUpEsQueue(6);
    EXPECT_EQ(mEvents.lines(), (std::vector{line, line}));
}

}  // namespace
}  // namespace android::ogm::test::ogm_es_queue_test
