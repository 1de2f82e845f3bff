// SPDX-License-Identifier: Apache-2.0
#include <gtest/gtest.h>
#include <utils/RefBase.h>

#include <string>
#include <utility>

#include "TestObject.h"

using android::sp;
using android::wp;

namespace {

TEST(WeakPointer, DoesNotKeepItsObjectAlive) {
    std::string events;
    sp<TestObject> strong = new TestObject(&events);
    wp<TestObject> weak = strong;
    EXPECT_EQ(strong->getStrongCount(), 1);
    strong.clear();
    EXPECT_EQ(events, "first1 lastStrong0 deleted");
}

TEST(WeakPointer, PromotesToAnAdditionalReferenceWhileTheObjectIsHeld) {
    sp<TestObject> strong = new TestObject;
    wp<TestObject> weak = strong;
    sp<TestObject> promoted = weak.promote();
    EXPECT_EQ(promoted, strong);
    EXPECT_EQ(strong->getStrongCount(), 2);
}

TEST(WeakPointer, PromotesToNullAfterTheLastStrongReferenceHasGone) {
    sp<TestObject> strong = new TestObject;
    wp<TestObject> weak = strong;
    strong.clear();
    EXPECT_EQ(weak.promote(), nullptr);
    EXPECT_EQ(weak.promote(), nullptr);
}

TEST(WeakPointer, PromotesANeverHeldObjectWhichThenBelongsToTheReference) {
    std::string events;
    auto* object = new TestObject(&events);
    wp<TestObject> weak(object);
    {
        sp<TestObject> promoted = weak.promote();
        ASSERT_EQ(promoted, object);
        EXPECT_EQ(object->getStrongCount(), 1);
    }
    EXPECT_EQ(events, "lastStrong0 deleted");
}

TEST(WeakPointer, RevivesAnObjectOfExtendedLife) {
    std::string events;
    auto* object = new TestObject(&events);
    object->extendObjectLifetime(TestObject::kLivesUntilLastWeak);
    wp<TestObject> weak(object);
    { sp<TestObject> strong = object; }
    sp<TestObject> revived = weak.promote();
    ASSERT_EQ(revived, object);
    EXPECT_EQ(object->getStrongCount(), 1);
    revived.clear();
    object->refuseRevival();
    EXPECT_EQ(weak.promote(), nullptr);
    weak.clear();
    EXPECT_EQ(events, "first1 lastStrong0 lastStrong0 lastWeak deleted");
}

TEST(WeakPointer, CopiesMovesAndClearsKeepTheWeakCount) {
    sp<TestObject> strong = new TestObject;
    auto* refs = strong->getWeakRefs();
    wp<TestObject> weak = strong;
    wp<TestObject> copy = weak;
    EXPECT_EQ(refs->getWeakCount(), 3);
    wp<TestObject> moved = std::move(copy);
    EXPECT_EQ(refs->getWeakCount(), 3);
    EXPECT_EQ(copy.promote(), nullptr);
    moved.clear();
    EXPECT_EQ(refs->getWeakCount(), 2);
    weak = nullptr;
    EXPECT_EQ(refs->getWeakCount(), 1);
    EXPECT_EQ(strong->getStrongCount(), 1);
}

TEST(WeakPointer, ConvertsFromAReferenceToADerivedObject) {
    sp<DerivedObject> derived = new DerivedObject;
    wp<TestObject> weak = derived;
    EXPECT_EQ(weak.promote(), derived);
    EXPECT_EQ(weak.unsafe_get(), derived.get());
}

TEST(WeakPointer, IsEqualOnlyToPointersToTheSameObject) {
    sp<TestObject> one = new TestObject;
    sp<TestObject> two = new TestObject;
    wp<TestObject> weak = one;
    EXPECT_TRUE(weak == wp<TestObject>(one));
    EXPECT_TRUE(weak != wp<TestObject>(two));
    EXPECT_TRUE(weak != wp<TestObject>());
}

}  // namespace
