// SPDX-License-Identifier: Apache-2.0
#include "OgmPacketBuffer.h"

#include <gtest/gtest.h>

#include "Bytes.h"

namespace android::ogm::test {
namespace {

ByteView viewOf(const Bytes& bytes) {
    return {bytes.data(), bytes.size()};
}

Bytes bytesIn(const sp<ABuffer>& buffer) {
    return Bytes(buffer->data(), buffer->data() + buffer->size());
}

TEST(OgmPacketBufferTest, ANullBufferIsMadeWithItsSizeRoundedUpTo64KiB) {
    sp<ABuffer> buffer;
    EXPECT_EQ(appendBytes(&buffer, viewOf({1, 2, 3})), 65536u);
    EXPECT_EQ(bytesIn(buffer), (Bytes{1, 2, 3}));
    EXPECT_EQ(buffer->capacity(), 65536u);
}

TEST(OgmPacketBufferTest, NothingMakesABufferWithoutCapacity) {
    sp<ABuffer> buffer;
    EXPECT_EQ(appendBytes(&buffer, viewOf({})), 0u);
    ASSERT_NE(buffer, nullptr);
    EXPECT_EQ(buffer->capacity(), 0u);
}

TEST(OgmPacketBufferTest, ABufferThatIsLargeEnoughIsKept) {
    sp<ABuffer> buffer;
    appendBytes(&buffer, viewOf({1}));
    const ABuffer* const before = buffer.get();
    EXPECT_EQ(appendBytes(&buffer, viewOf(filled(65535, 2))), std::nullopt);
    EXPECT_EQ(buffer.get(), before);
    EXPECT_EQ(buffer->size(), 65536u);
}

TEST(OgmPacketBufferTest, ABufferThatIsTooSmallIsReplacedWithItsBytes) {
    sp<ABuffer> buffer;
    appendBytes(&buffer, viewOf(pattern(65536, 1)));
    EXPECT_EQ(appendBytes(&buffer, viewOf({7})), 131072u);
    EXPECT_EQ(bytesIn(buffer), joined({pattern(65536, 1), {7}}));
}

TEST(OgmPacketBufferTest, DroppingTheFrontKeepsTheRest) {
    sp<ABuffer> buffer;
    appendBytes(&buffer, viewOf({1, 2, 3, 4, 5}));
    dropFront(*buffer, 2);
    EXPECT_EQ(bytesIn(buffer), (Bytes{3, 4, 5}));
    appendBytes(&buffer, viewOf({6}));
    EXPECT_EQ(bytesIn(buffer), (Bytes{3, 4, 5, 6}));
    dropFront(*buffer, 4);
    EXPECT_EQ(buffer->size(), 0u);
}

}  // namespace
}  // namespace android::ogm::test
