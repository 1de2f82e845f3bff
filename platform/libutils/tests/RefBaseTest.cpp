// SPDX-License-Identifier: Apache-2.0
#include <utils/RefBase.h>

#include <android/log.h>
#include <gtest/gtest.h>

#include <string>
#include <thread>
#include <vector>

#include "TestObject.h"

using android::RefBase;
using android::sp;
using android::wp;

namespace {

constexpr int32_t kNeverHeld = 268435456;

int gLogLines = 0;

TEST(RefBase, AnObjectThatWasNeverHeldHasAStrongCountOf268435456AndNoWeakReference) {
    auto* object = new TestObject;
    EXPECT_EQ(object->getStrongCount(), kNeverHeld);
    EXPECT_EQ(object->getWeakRefs()->getWeakCount(), 0);
    EXPECT_EQ(object->getWeakRefs()->refBase(), object);
    delete object;
}

TEST(RefBase, TheFirstReferenceCallsOnFirstRefOnceAfterTheCountHasBecomeOne) {
    std::string events;
    auto* object = new TestObject(&events);
    object->incStrong(&events);
    EXPECT_EQ(object->getStrongCount(), 1);
    object->incStrong(&events);
    EXPECT_EQ(object->getStrongCount(), 2);
    EXPECT_EQ(events, "first1");
    object->decStrong(&events);
    object->decStrong(&events);
}

TEST(RefBase, TheLastReferenceCallsOnLastStrongRefAndThenDeletesTheObject) {
    std::string events;
    auto* object = new TestObject(&events);
    object->incStrong(&events);
    object->decStrong(&events);
    EXPECT_EQ(events, "first1 lastStrong0 deleted");
}

TEST(RefBase, AStrongReferenceIncludesAWeakOne) {
    auto* object = new TestObject;
    object->incStrong(object);
    EXPECT_EQ(object->getWeakRefs()->getWeakCount(), 1);
    RefBase::weakref_type* refs = object->createWeak(object);
    EXPECT_EQ(refs, object->getWeakRefs());
    EXPECT_EQ(refs->getWeakCount(), 2);
    object->decStrong(object);
    EXPECT_EQ(refs->getWeakCount(), 1);
    refs->decWeak(object);
}

TEST(RefBase, PlainDeleteOfANeverHeldObjectLogsNothing) {
    gLogLines = 0;
    __android_log_set_logger([](const __android_log_message*) { ++gLogLines; });
    std::string events;
    delete new TestObject(&events);
    __android_log_set_logger(__android_log_stderr_logger);
    EXPECT_EQ(events, "deleted");
    EXPECT_EQ(gLogLines, 0);
}

TEST(RefBase, ANeverHeldObjectOutlivesItsWeakReferences) {
    std::string events;
    auto* object = new TestObject(&events);
    { wp<TestObject> weak(object); }
    EXPECT_EQ(events, "");
    EXPECT_EQ(object->getWeakRefs()->getWeakCount(), 0);
    delete object;
}

TEST(RefBase, AnExtendedLifeEndsWithTheLastWeakReference) {
    std::string events;
    auto* object = new TestObject(&events);
    object->extendObjectLifetime(TestObject::kLivesUntilLastWeak);
    wp<TestObject> weak(object);
    { sp<TestObject> strong(object); }
    EXPECT_EQ(events, "first1 lastStrong0");
    events.clear();
    weak.clear();
    EXPECT_EQ(events, "lastWeak deleted");
}

TEST(RefBase, CountsSurviveUseByManyThreads) {
    std::string events;
    sp<TestObject> object = new TestObject(&events);
    std::vector<std::thread> threads;
    for (int i = 0; i < 4; ++i) {
        threads.emplace_back([object] {
            for (int round = 0; round < 2000; ++round) {
                sp<TestObject> strong = object;
                wp<TestObject> weak = strong;
                EXPECT_EQ(weak.promote(), object);
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    EXPECT_EQ(object->getStrongCount(), 1);
    EXPECT_EQ(events, "first1");
}

TEST(RefBase, TheLastReferenceAndAPromotionInTwoThreadsAgreeOnTheOwner) {
    for (int round = 0; round < 500; ++round) {
        sp<TestObject> strong = new TestObject;
        wp<TestObject> weak = strong;
        sp<TestObject> promoted;
        std::thread other([&] { promoted = weak.promote(); });
        strong.clear();
        other.join();
        if (promoted) {
            EXPECT_EQ(promoted->getStrongCount(), 1);
        }
    }
}

using RefBaseDeathTest = testing::Test;

TEST(RefBaseDeathTest, DroppingAStrongReferenceThatWasNeverTakenAborts) {
    EXPECT_DEATH((new TestObject)->decStrong(nullptr),
                 "decStrong\\(\\) without a reference on object");
}

TEST(RefBaseDeathTest, DroppingMoreStrongReferencesThanWereTakenAborts) {
    auto dropTwice = [] {
        auto* object = new TestObject;
        object->extendObjectLifetime(TestObject::kLivesUntilLastWeak);
        wp<TestObject> weak(object);
        object->incStrong(nullptr);
        object->decStrong(nullptr);
        object->decStrong(nullptr);
    };
    EXPECT_DEATH(dropTwice(), "decStrong\\(\\) without a reference on object");
}

TEST(RefBaseDeathTest, DroppingMoreWeakReferencesThanWereTakenAborts) {
    EXPECT_DEATH((new TestObject)->getWeakRefs()->decWeak(nullptr),
                 "decWeak\\(\\) without a reference on block");
}

TEST(RefBaseDeathTest, RequiringAStrongReferenceOnANeverHeldObjectAborts) {
    EXPECT_DEATH((new TestObject)->incStrongRequireStrong(nullptr),
                 "is not held by a strong reference");
}

}  // namespace
