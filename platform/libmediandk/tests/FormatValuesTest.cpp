// SPDX-License-Identifier: Apache-2.0
#include <media/NdkMediaFormat.h>

#include <string.h>

#include <string>

#include "FormatFixture.h"

namespace {

class FormatValuesTest : public FormatTest {
  protected:
    enum Type { kInt32, kInt64, kSize, kFloat, kDouble, kString, kBuffer, kRect, kTypeCount };

    void set(Type type, const char* name) {
        switch (type) {
            case kInt32:
                return AMediaFormat_setInt32(mFormat, name, 1);
            case kInt64:
                return AMediaFormat_setInt64(mFormat, name, 1);
            case kSize:
                return AMediaFormat_setSize(mFormat, name, 1);
            case kFloat:
                return AMediaFormat_setFloat(mFormat, name, 1);
            case kDouble:
                return AMediaFormat_setDouble(mFormat, name, 1);
            case kString:
                return AMediaFormat_setString(mFormat, name, "1");
            case kBuffer:
                return AMediaFormat_setBuffer(mFormat, name, "1", 1);
            case kRect:
                return AMediaFormat_setRect(mFormat, name, 1, 1, 1, 1);
            case kTypeCount:
                return;
        }
    }

    /** Whether the getter of a type finds the entry; checks that a failing getter writes nothing.
     */
    bool found(Type type, const char* name) {
        Outputs out;
        const bool result = call(type, name, &out);
        if (!result) {
            const Outputs untouched;
            EXPECT_EQ(untouched.int32, out.int32);
            EXPECT_EQ(untouched.int64, out.int64);
            EXPECT_EQ(untouched.size, out.size);
            EXPECT_EQ(untouched.single, out.single);
            EXPECT_EQ(untouched.dbl, out.dbl);
            EXPECT_EQ(untouched.string, out.string);
            EXPECT_EQ(untouched.data, out.data);
            for (int i = 0; i < 4; ++i) {
                EXPECT_EQ(untouched.rect[i], out.rect[i]);
            }
        }
        return result;
    }

  private:
    struct Outputs {
        int32_t int32 = -77;
        int64_t int64 = -77;
        size_t size = 77;
        float single = -77;
        double dbl = -77;
        const char* string = "untouched";
        void* data = nullptr;
        int32_t rect[4] = {-7, -8, -9, -10};
    };

    bool call(Type type, const char* name, Outputs* out) {
        switch (type) {
            case kInt32:
                return AMediaFormat_getInt32(mFormat, name, &out->int32);
            case kInt64:
                return AMediaFormat_getInt64(mFormat, name, &out->int64);
            case kSize:
                return AMediaFormat_getSize(mFormat, name, &out->size);
            case kFloat:
                return AMediaFormat_getFloat(mFormat, name, &out->single);
            case kDouble:
                return AMediaFormat_getDouble(mFormat, name, &out->dbl);
            case kString:
                return AMediaFormat_getString(mFormat, name, &out->string);
            case kBuffer:
                return AMediaFormat_getBuffer(mFormat, name, &out->data, &out->size);
            case kRect:
                return AMediaFormat_getRect(mFormat, name, &out->rect[0], &out->rect[1],
                                            &out->rect[2], &out->rect[3]);
            case kTypeCount:
                break;
        }
        return false;
    }
};

TEST_F(FormatValuesTest, ANewFormatIsEmpty) {
    EXPECT_EQ("}", text());
    for (int type = 0; type < kTypeCount; ++type) {
        EXPECT_FALSE(found(static_cast<Type>(type), "name")) << type;
    }
}

TEST_F(FormatValuesTest, DeletingGivesOkAndAllowsNull) {
    EXPECT_EQ(AMEDIA_OK, AMediaFormat_delete(AMediaFormat_new()));
    EXPECT_EQ(AMEDIA_OK, AMediaFormat_delete(nullptr));
}

TEST_F(FormatValuesTest, EachTypeReturnsTheValueThatWasSet) {
    AMediaFormat_setInt32(mFormat, "int32", INT32_MIN);
    AMediaFormat_setInt64(mFormat, "int64", INT64_MIN);
    AMediaFormat_setSize(mFormat, "size", SIZE_MAX);
    AMediaFormat_setFloat(mFormat, "float", 29.97F);
    AMediaFormat_setDouble(mFormat, "double", 0.1);
    AMediaFormat_setRect(mFormat, "rect", 1, -2, 3, -4);

    int32_t int32 = 0;
    ASSERT_TRUE(AMediaFormat_getInt32(mFormat, "int32", &int32));
    EXPECT_EQ(INT32_MIN, int32);
    int64_t int64 = 0;
    ASSERT_TRUE(AMediaFormat_getInt64(mFormat, "int64", &int64));
    EXPECT_EQ(INT64_MIN, int64);
    size_t size = 0;
    ASSERT_TRUE(AMediaFormat_getSize(mFormat, "size", &size));
    EXPECT_EQ(SIZE_MAX, size);
    float single = 0;
    ASSERT_TRUE(AMediaFormat_getFloat(mFormat, "float", &single));
    EXPECT_EQ(29.97F, single);
    double dbl = 0;
    ASSERT_TRUE(AMediaFormat_getDouble(mFormat, "double", &dbl));
    EXPECT_EQ(0.1, dbl);
}

TEST_F(FormatValuesTest, ARectIsLeftTopRightBottom) {
    AMediaFormat_setRect(mFormat, "rect", 1, -2, 3, -4);
    int32_t left = 0;
    int32_t top = 0;
    int32_t right = 0;
    int32_t bottom = 0;
    ASSERT_TRUE(AMediaFormat_getRect(mFormat, "rect", &left, &top, &right, &bottom));
    EXPECT_EQ(1, left);
    EXPECT_EQ(-2, top);
    EXPECT_EQ(3, right);
    EXPECT_EQ(-4, bottom);
}

TEST_F(FormatValuesTest, OnlyTheGetterOfTheSameTypeFindsAnEntry) {
    for (int setType = 0; setType < kTypeCount; ++setType) {
        AMediaFormat_clear(mFormat);
        set(static_cast<Type>(setType), "name");
        for (int getType = 0; getType < kTypeCount; ++getType) {
            EXPECT_EQ(setType == getType, found(static_cast<Type>(getType), "name"))
                    << "set as " << setType << ", read as " << getType;
        }
    }
}

TEST_F(FormatValuesTest, SettingReplacesAnEntryWhateverItsType) {
    for (int first = 0; first < kTypeCount; ++first) {
        for (int second = 0; second < kTypeCount; ++second) {
            set(static_cast<Type>(first), "name");
            set(static_cast<Type>(second), "name");
            EXPECT_TRUE(found(static_cast<Type>(second), "name"));
            EXPECT_EQ(first == second, found(static_cast<Type>(first), "name"));
        }
    }
}

TEST_F(FormatValuesTest, EntriesKeepTheOrderOfInsertionAndReplacingKeepsThePlace) {
    AMediaFormat_setInt32(mFormat, "b", 1);
    AMediaFormat_setInt32(mFormat, "a", 2);
    AMediaFormat_setInt32(mFormat, "c", 3);
    AMediaFormat_setString(mFormat, "a", "new");
    EXPECT_EQ("b: int32(1), a: string(new), c: int32(3)}", text());
}

TEST_F(FormatValuesTest, NamesAreCaseSensitive) {
    AMediaFormat_setInt32(mFormat, "Name", 1);
    EXPECT_FALSE(found(kInt32, "name"));
    EXPECT_FALSE(found(kInt32, "Nam"));
    EXPECT_FALSE(found(kInt32, "Name "));
    EXPECT_TRUE(found(kInt32, "Name"));
}

TEST_F(FormatValuesTest, AKeyAndATextThatReadsTheSameAreOneName) {
    int32_t value = 0;
    AMediaFormat_setInt32(mFormat, AMEDIAFORMAT_KEY_WIDTH, 1);
    AMediaFormat_setInt32(mFormat, std::string("width").c_str(), 2);
    EXPECT_TRUE(AMediaFormat_getInt32(mFormat, AMEDIAFORMAT_KEY_WIDTH, &value));
    EXPECT_EQ(2, value);
    AMediaFormat_setInt32(mFormat, std::string("height").c_str(), 3);
    AMediaFormat_setInt32(mFormat, AMEDIAFORMAT_KEY_HEIGHT, 4);
    EXPECT_TRUE(AMediaFormat_getInt32(mFormat, std::string("height").c_str(), &value));
    EXPECT_EQ(4, value);
    EXPECT_EQ("width: int32(2), height: int32(4)}", text());
}

TEST_F(FormatValuesTest, NamesAreCopied) {
    char name[] = "name";
    AMediaFormat_setInt32(mFormat, name, 1);
    name[0] = 'g';
    EXPECT_TRUE(found(kInt32, "name"));
    EXPECT_FALSE(found(kInt32, "game"));
}

TEST_F(FormatValuesTest, ABufferIsACopyOfTheBytes) {
    uint8_t bytes[] = {1, 0, 3};
    AMediaFormat_setBuffer(mFormat, "buffer", bytes, sizeof bytes);
    bytes[0] = 99;
    void* data = nullptr;
    size_t size = 0;
    ASSERT_TRUE(AMediaFormat_getBuffer(mFormat, "buffer", &data, &size));
    ASSERT_EQ(3U, size);
    EXPECT_EQ(0, memcmp("\1\0\3", data, 3));
}

TEST_F(FormatValuesTest, ABufferStaysInPlaceWhileItsEntryExists) {
    AMediaFormat_setBuffer(mFormat, "buffer", "abc", 3);
    void* before = nullptr;
    size_t size = 0;
    ASSERT_TRUE(AMediaFormat_getBuffer(mFormat, "buffer", &before, &size));
    for (int i = 0; i < 200; ++i) {
        AMediaFormat_setInt32(mFormat, std::to_string(i).c_str(), i);
    }
    void* after = nullptr;
    ASSERT_TRUE(AMediaFormat_getBuffer(mFormat, "buffer", &after, &size));
    EXPECT_EQ(before, after);
    EXPECT_EQ(0, memcmp("abc", before, 3));
}

TEST_F(FormatValuesTest, ASizeOfZeroMakesAnEmptyEntry) {
    AMediaFormat_setBuffer(mFormat, "buffer", nullptr, 0);
    void* data = nullptr;
    size_t size = 7;
    ASSERT_TRUE(AMediaFormat_getBuffer(mFormat, "buffer", &data, &size));
    EXPECT_EQ(0U, size);
    EXPECT_NE(nullptr, data);
}

TEST_F(FormatValuesTest, ClearRemovesAllEntries) {
    AMediaFormat_setInt32(mFormat, "a", 1);
    AMediaFormat_setString(mFormat, "b", "text");
    AMediaFormat_clear(mFormat);
    EXPECT_EQ("}", text());
    EXPECT_FALSE(found(kInt32, "a"));
    EXPECT_FALSE(found(kString, "b"));
}

}  // namespace
