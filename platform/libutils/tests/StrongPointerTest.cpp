// SPDX-License-Identifier: Apache-2.0
#include <utils/StrongPointer.h>

#include <gtest/gtest.h>
#include <utils/RefBase.h>

#include <functional>
#include <string>
#include <type_traits>
#include <utility>

#include "TestObject.h"

using android::sp;

namespace {

TEST(StrongPointer, IsNullByDefault) {
    sp<TestObject> pointer;
    EXPECT_EQ(pointer.get(), nullptr);
    EXPECT_FALSE(pointer);
    EXPECT_EQ(pointer, nullptr);
}

TEST(StrongPointer, ConstructionFromARawPointerIsImplicitAndCounts) {
    auto* raw = new TestObject;
    sp<TestObject> pointer = raw;
    EXPECT_EQ(pointer.get(), raw);
    EXPECT_EQ(raw->getStrongCount(), 1);
    EXPECT_EQ(&*pointer, raw);
    EXPECT_EQ(pointer->getStrongCount(), 1);
}

TEST(StrongPointer, DeletesAnObjectThatItHeldOnlyForAMoment) {
    std::string events;
    { sp<TestObject> pointer = new TestObject(&events); }
    EXPECT_EQ(events, "first1 lastStrong0 deleted");
}

TEST(StrongPointer, CopiesCountAndMovesDoNot) {
    sp<TestObject> first = new TestObject;
    sp<TestObject> copy = first;
    EXPECT_EQ(first->getStrongCount(), 2);
    sp<TestObject> moved = std::move(copy);
    EXPECT_EQ(first->getStrongCount(), 2);
    EXPECT_EQ(copy, nullptr);
    EXPECT_EQ(moved, first);
}

TEST(StrongPointer, AssignmentHoldsTheNewObjectAndReleasesTheOld) {
    std::string oldEvents;
    sp<TestObject> pointer = new TestObject(&oldEvents);
    sp<TestObject> other = new TestObject;
    pointer = other;
    EXPECT_EQ(oldEvents, "first1 lastStrong0 deleted");
    EXPECT_EQ(other->getStrongCount(), 2);
    pointer = std::move(other);
    EXPECT_EQ(other, nullptr);
    EXPECT_EQ(pointer->getStrongCount(), 1);
    pointer = new TestObject;
    EXPECT_EQ(pointer->getStrongCount(), 1);
    pointer = nullptr;
    EXPECT_FALSE(pointer);
}

TEST(StrongPointer, AssignmentOfItselfKeepsTheObject) {
    sp<TestObject> pointer = new TestObject;
    sp<TestObject>& same = pointer;
    pointer = same;
    EXPECT_EQ(pointer->getStrongCount(), 1);
    pointer = std::move(same);
    ASSERT_TRUE(pointer);
    EXPECT_EQ(pointer->getStrongCount(), 1);
}

TEST(StrongPointer, ConvertsFromADerivedTypeButNotToOne) {
    sp<DerivedObject> derived = new DerivedObject;
    sp<TestObject> base = derived;
    EXPECT_EQ(base->getStrongCount(), 2);
    sp<TestObject> moved = std::move(derived);
    EXPECT_EQ(base->getStrongCount(), 2);
    base = sp<DerivedObject>(new DerivedObject);
    base = new DerivedObject;
    sp<TestObject> fromRaw(new DerivedObject);
    EXPECT_EQ(fromRaw->getStrongCount(), 1);
    EXPECT_FALSE((std::is_convertible_v<sp<TestObject>, TestObject*>));
    EXPECT_FALSE((std::is_convertible_v<sp<TestObject>, bool>));
}

TEST(StrongPointer, HoldsAConstObject) {
    sp<TestObject> object = new TestObject;
    sp<const TestObject> constant = object;
    EXPECT_EQ(object->getStrongCount(), 2);
    EXPECT_EQ(constant, object);
}

TEST(StrongPointer, ClearDropsTheReferenceOnce) {
    sp<TestObject> first = new TestObject;
    sp<TestObject> second = first;
    second.clear();
    second.clear();
    EXPECT_EQ(second, nullptr);
    EXPECT_EQ(first->getStrongCount(), 1);
}

TEST(StrongPointer, MakeConstructsTheObjectWithItsFirstReference) {
    std::string events;
    sp<TestObject> object = sp<TestObject>::make(&events);
    EXPECT_EQ(object->getStrongCount(), 1);
    EXPECT_EQ(events, "first1");
}

TEST(StrongPointer, FromExistingAddsAReferenceToAHeldObject) {
    sp<TestObject> object = new TestObject;
    EXPECT_EQ(sp<TestObject>::fromExisting(object.get()), object);
    sp<TestObject> second = sp<TestObject>::fromExisting(object.get());
    EXPECT_EQ(object->getStrongCount(), 2);
    EXPECT_EQ(sp<TestObject>::fromExisting(nullptr), nullptr);
}

TEST(StrongPointer, CastGivesTheSameObjectAsItsDerivedType) {
    sp<TestObject> base = new DerivedObject;
    sp<DerivedObject> derived = sp<DerivedObject>::cast(base);
    EXPECT_EQ(derived, base);
    EXPECT_EQ(base->getStrongCount(), 2);
}

TEST(StrongPointer, ComparesWithPointersOfAllKinds) {
    sp<DerivedObject> derived = new DerivedObject;
    sp<TestObject> base = derived;
    sp<TestObject> other = new TestObject;
    EXPECT_TRUE(base == derived);
    EXPECT_FALSE(base != derived);
    EXPECT_TRUE(base == derived.get());
    EXPECT_TRUE(derived.get() == base);
    EXPECT_TRUE(base != other);
    EXPECT_TRUE(base != other.get());
    EXPECT_TRUE(base != nullptr);
    EXPECT_TRUE(nullptr != base);
    EXPECT_TRUE(base != NULL);
    EXPECT_TRUE(sp<TestObject>() == NULL);
}

TEST(StrongPointer, IsOrderedByAddress) {
    sp<TestObject> one = new TestObject;
    sp<TestObject> two = new TestObject;
    const std::less<TestObject*> before;
    EXPECT_EQ(one < two, before(one.get(), two.get()));
    EXPECT_EQ(one > two.get(), before(two.get(), one.get()));
    EXPECT_EQ(one.get() < two, before(one.get(), two.get()));
    EXPECT_TRUE(one <= one);
    EXPECT_TRUE(one >= one.get());
    EXPECT_TRUE(one > nullptr);
    EXPECT_FALSE(one <= nullptr);
}

using StrongPointerDeathTest = testing::Test;

TEST(StrongPointerDeathTest, FromExistingAbortsForAnObjectThatNobodyHolds) {
    EXPECT_DEATH(sp<TestObject>::fromExisting(new TestObject), "is not held by a strong reference");
}

// Frames are smaller than a page, so at one of the depths the object and the frame share a page. At
// the other depths the reference taken before keeps sp<> from deleting the object.
void holdLocalObjects(int depth) {
    volatile char padding[256];
    padding[0] = 0;
    TestObject local;
    local.incStrong(&local);
    { sp<TestObject> pointer(&local); }
    if (depth > 0) {
        holdLocalObjects(depth - 1);
    }
    padding[1] = padding[0];
}

TEST(StrongPointerDeathTest, HoldingAnObjectOnTheStackAborts) {
    EXPECT_DEATH(holdLocalObjects(32), "lies on the stack and cannot be held by sp<>");
}

}  // namespace
