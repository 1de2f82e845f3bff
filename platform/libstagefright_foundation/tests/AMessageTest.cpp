// SPDX-License-Identifier: Apache-2.0
#include <media/stagefright/foundation/AMessage.h>

#include <gtest/gtest.h>

#include <string>
#include <type_traits>

#include "ExpectAssertion.h"

using android::ABuffer;
using android::AMessage;
using android::AString;
using android::RefBase;
using android::sp;

namespace {

TEST(AMessage, BeginsEmptyWithWhatZero) {
    sp<AMessage> message = new AMessage;
    EXPECT_EQ(message->what(), 0u);
    EXPECT_EQ(message->countEntries(), 0u);
    EXPECT_FALSE(message->contains("timeUs"));
}

TEST(AMessage, FindsWhatWasSetForEachType) {
    sp<AMessage> message = new AMessage;
    int target = 0;
    sp<ABuffer> buffer = new ABuffer(4);
    sp<AMessage> inner = new AMessage;
    sp<RefBase> object = new ABuffer(1);
    message->setInt32("int32", -1);
    message->setInt64("int64", INT64_MAX);
    message->setSize("size", SIZE_MAX);
    message->setFloat("float", 0.5f);
    message->setDouble("double", 0.25);
    message->setPointer("pointer", &target);
    message->setString("string", "text");
    message->setObject("object", object);
    message->setBuffer("buffer", buffer);
    message->setMessage("message", inner);
    message->setRect("rect", 1, 2, 3, 4);
    EXPECT_EQ(message->countEntries(), 11u);

    int32_t int32;
    ASSERT_TRUE(message->findInt32("int32", &int32));
    EXPECT_EQ(int32, -1);
    int64_t int64;
    ASSERT_TRUE(message->findInt64("int64", &int64));
    EXPECT_EQ(int64, INT64_MAX);
    size_t size;
    ASSERT_TRUE(message->findSize("size", &size));
    EXPECT_EQ(size, SIZE_MAX);
    float floating;
    ASSERT_TRUE(message->findFloat("float", &floating));
    EXPECT_EQ(floating, 0.5f);
    double wide;
    ASSERT_TRUE(message->findDouble("double", &wide));
    EXPECT_EQ(wide, 0.25);
    void* pointer;
    ASSERT_TRUE(message->findPointer("pointer", &pointer));
    EXPECT_EQ(pointer, &target);
    AString string;
    ASSERT_TRUE(message->findString("string", &string));
    EXPECT_STREQ(string.c_str(), "text");
    sp<RefBase> foundObject;
    ASSERT_TRUE(message->findObject("object", &foundObject));
    EXPECT_EQ(foundObject, object);
    sp<ABuffer> foundBuffer;
    ASSERT_TRUE(message->findBuffer("buffer", &foundBuffer));
    EXPECT_EQ(foundBuffer, buffer);
    sp<AMessage> foundMessage;
    ASSERT_TRUE(message->findMessage("message", &foundMessage));
    EXPECT_EQ(foundMessage, inner);
    int32_t left, top, right, bottom;
    ASSERT_TRUE(message->findRect("rect", &left, &top, &right, &bottom));
    EXPECT_EQ(left, 1);
    EXPECT_EQ(top, 2);
    EXPECT_EQ(right, 3);
    EXPECT_EQ(bottom, 4);
}

TEST(AMessage, AnotherTypeOrNameIsNotFoundAndLeavesTheOutputAlone) {
    sp<AMessage> message = new AMessage;
    message->setInt32("number", 5);
    int64_t wide = 77;
    EXPECT_FALSE(message->findInt64("number", &wide));
    EXPECT_FALSE(message->findInt64("absent", &wide));
    EXPECT_EQ(wide, 77);
    size_t size = 77;
    EXPECT_FALSE(message->findSize("number", &size));
    EXPECT_EQ(size, 77u);
    AString string("old");
    EXPECT_FALSE(message->findString("number", &string));
    EXPECT_STREQ(string.c_str(), "old");
    int32_t left = 7, top = 7, right = 7, bottom = 7;
    EXPECT_FALSE(message->findRect("number", &left, &top, &right, &bottom));
    EXPECT_EQ(left + top + right + bottom, 28);
    int32_t number = 77;
    EXPECT_FALSE(message->findInt32("Number", &number));
    EXPECT_EQ(number, 77);
}

TEST(AMessage, ASetterReplacesAValueOfAnyEarlierType) {
    sp<AMessage> message = new AMessage;
    message->setString("key", "text");
    message->setInt64("key", 8);
    EXPECT_EQ(message->countEntries(), 1u);
    AString string;
    EXPECT_FALSE(message->findString("key", &string));
    int64_t value = 0;
    EXPECT_TRUE(message->findInt64("key", &value));
    EXPECT_EQ(value, 8);
}

TEST(AMessage, ContainsAsksForTheNameOnly) {
    sp<AMessage> message = new AMessage;
    message->setDouble("key", 1);
    EXPECT_TRUE(message->contains("key"));
    EXPECT_FALSE(message->contains("ke"));
}

TEST(AMessage, FindAsInt64AcceptsBothIntegerTypes) {
    sp<AMessage> message = new AMessage;
    message->setInt32("narrow", -3);
    message->setInt64("wide", 1ll << 40);
    message->setSize("size", 9);
    int64_t value = 0;
    EXPECT_TRUE(message->findAsInt64("narrow", &value));
    EXPECT_EQ(value, -3);
    EXPECT_TRUE(message->findAsInt64("wide", &value));
    EXPECT_EQ(value, 1ll << 40);
    EXPECT_FALSE(message->findAsInt64("size", &value));
    EXPECT_EQ(value, 1ll << 40);
}

TEST(AMessage, SetStringTakesAWholeTextAPartOrAnAString) {
    sp<AMessage> message = new AMessage;
    AString value;
    message->setString("key", "abcdef", 3);
    EXPECT_TRUE(message->findString("key", &value));
    EXPECT_STREQ(value.c_str(), "abc");
    message->setString("key", AString("other"));
    EXPECT_TRUE(message->findString("key", &value));
    EXPECT_STREQ(value.c_str(), "other");
}

TEST(AMessage, ClearRemovesTheValuesAndKeepsWhat) {
    sp<AMessage> message = new AMessage;
    message->setWhat(9);
    message->setInt32("key", 1);
    message->clear();
    EXPECT_EQ(message->countEntries(), 0u);
    EXPECT_EQ(message->what(), 9u);
}

TEST(AMessage, HoldsItsBuffersUntilTheyAreReplaced) {
    sp<AMessage> message = new AMessage;
    sp<ABuffer> buffer = new ABuffer(4);
    message->setBuffer("key", buffer);
    EXPECT_EQ(buffer->getStrongCount(), 2);
    message->setInt32("key", 0);
    EXPECT_EQ(buffer->getStrongCount(), 1);
}

TEST(AMessage, DupCopiesInnerMessagesAndSharesBuffers) {
    sp<AMessage> message = new AMessage;
    message->setWhat(4);
    sp<ABuffer> buffer = new ABuffer(4);
    sp<AMessage> inner = new AMessage;
    message->setBuffer("buffer", buffer);
    message->setMessage("message", inner);
    message->setMessage("none", nullptr);
    sp<AMessage> copy = message->dup();
    EXPECT_EQ(copy->what(), 4u);
    EXPECT_EQ(copy->countEntries(), 3u);
    sp<ABuffer> copiedBuffer;
    EXPECT_TRUE(copy->findBuffer("buffer", &copiedBuffer));
    EXPECT_EQ(copiedBuffer, buffer);
    sp<AMessage> copiedInner;
    EXPECT_TRUE(copy->findMessage("message", &copiedInner));
    EXPECT_NE(copiedInner, inner);
    copy->setInt32("more", 1);
    EXPECT_FALSE(message->contains("more"));
}

TEST(AMessage, ExtendSetsEveryValueOfTheOther) {
    sp<AMessage> message = new AMessage;
    message->setInt32("kept", 1);
    message->setInt32("replaced", 2);
    sp<AMessage> other = new AMessage;
    other->setString("replaced", "text");
    other->setInt64("added", 3);
    message->extend(other);
    EXPECT_EQ(message->countEntries(), 3u);
    EXPECT_EQ(other->countEntries(), 2u);
    AString text;
    EXPECT_TRUE(message->findString("replaced", &text));
    int64_t added = 0;
    EXPECT_TRUE(message->findInt64("added", &added));
    EXPECT_EQ(added, 3);
    message->extend(message);
    EXPECT_EQ(message->countEntries(), 3u);
}

TEST(AMessage, CannotBeCopied) {
    EXPECT_FALSE(std::is_copy_constructible_v<AMessage>);
    EXPECT_FALSE(std::is_copy_assignable_v<AMessage>);
}

TEST(AMessageDeathTest, Holds256ValuesAndAbortsAtTheNext) {
    sp<AMessage> message = new AMessage;
    for (int i = 0; i < 256; ++i) {
        message->setInt32(std::to_string(i).c_str(), i);
    }
    EXPECT_EQ(message->countEntries(), 256u);
    message->setInt32("255", 0);
    EXPECT_EQ(message->countEntries(), 256u);
    EXPECT_ASSERTION(message->setInt32("256", 256), "AMessage",
                     "frameworks/av/media/libstagefright/foundation/AMessage.cpp:210 "
                     "CHECK(mItems.size() < kMaxNumItems) failed.");
}

}  // namespace
