// SPDX-License-Identifier: Apache-2.0
#include <gtest/gtest.h>
#include <utils/RefBase.h>

#include "AllocationCount.h"
#include "TestObject.h"

using android::sp;
using android::wp;

namespace {

TEST(RefBaseMemory, PlainDeleteOfANeverHeldObjectFreesTheCountBlockToo) {
    const int before = liveAllocations();
    auto* object = new TestObject;
    EXPECT_EQ(liveAllocations(), before + 2);
    delete object;
    EXPECT_EQ(liveAllocations(), before);
}

TEST(RefBaseMemory, PlainDeleteLeavesTheCountBlockToTheWeakReferencesThatRemain) {
    const int before = liveAllocations();
    auto* object = new TestObject;
    wp<TestObject> weak(object);
    delete object;
    EXPECT_EQ(liveAllocations(), before + 1);
    EXPECT_FALSE(weak.promote());
    weak.clear();
    EXPECT_EQ(liveAllocations(), before);
}

TEST(RefBaseMemory, TheCountBlockIsFreedWithTheLastReferenceOfEitherKind) {
    const int before = liveAllocations();
    { sp<TestObject> strong = new TestObject; }
    EXPECT_EQ(liveAllocations(), before);
    wp<TestObject> weak;
    {
        sp<TestObject> strong = new TestObject;
        weak = strong;
    }
    EXPECT_EQ(liveAllocations(), before + 1);
    weak.clear();
    EXPECT_EQ(liveAllocations(), before);
}

TEST(RefBaseMemory, AnExtendedLifeFreesTheCountBlockWithTheObject) {
    const int before = liveAllocations();
    auto* object = new TestObject;
    object->extendObjectLifetime(TestObject::kLivesUntilLastWeak);
    { sp<TestObject> strong(object); }
    EXPECT_EQ(liveAllocations(), before);
}

}  // namespace
