// SPDX-License-Identifier: Apache-2.0
#include "SessionMutator.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <limits>

#include "OgmFile.h"

namespace android::ogm::fuzz {
namespace {

constexpr size_t kMaxSize = 5000;
constexpr uint32_t kSeeds = 3000;

/** Replaces the engine: adds 1 to the first byte, and appends a byte if it fits. */
size_t addOne(uint8_t* data, size_t size, size_t maxSize) {
    if (size > 0) {
        ++data[0];
    }
    if (size < maxSize) {
        data[size++] = 0x55;
    }
    return size;
}

Bytes validInput() {
    SessionInput input;
    input.faults = {{FaultKind::kHalf, 300, 2}};
    input.calls = {{Operation::kOpen, 0, 0}, {Operation::kSeek, 9, 0x8123}};
    test::OneVideoOneAudio content;
    content.videoFrames = 5;
    content.audioPackets = 5;
    input.file = test::oneVideoOneAudioFile(content).bytes();
    return input.bytes();
}

size_t junkIn(const PagedFile& pieces) {
    size_t size = 0;
    for (const FilePiece& piece : pieces) {
        size += piece.junk.size();
    }
    return size;
}

TEST(SessionInputTest, AnInputThatIsReadAndWrittenStaysTheSame) {
    EXPECT_EQ(SessionInput(validInput().data(), validInput().size()).bytes(), validInput());
}

TEST(SessionInputTest, EveryRunOfBytesIsAnInput) {
    for (size_t size = 0; size < 40; ++size) {
        const Bytes bytes(size, 0xFF);
        const SessionInput input(bytes.data(), bytes.size());
        EXPECT_EQ(input.faults.size(), size == 0 ? 0U : SessionInput::kMaxFaults);
        EXPECT_LE(input.calls.size(), SessionInput::kMaxCalls);
    }
}

TEST(SessionInputTest, SeekTimesReachTheEndsOfTheirRange) {
    EXPECT_EQ(seekTimeUs(0x0005, 0), 500000);
    EXPECT_EQ(seekTimeUs(0x4005, 0), 5000);
    EXPECT_EQ(seekTimeUs(0x8000 + 0x2001, 7000000), 7000100);
    EXPECT_EQ(seekTimeUs(0xC000, 0), std::numeric_limits<int64_t>::min());
    EXPECT_EQ(seekTimeUs(0xC001, 0), std::numeric_limits<int64_t>::max());
}

TEST(PagedFileTest, PiecesJoinToTheSameFile) {
    test::OgmFile file;
    file.addJunk(7);
    file.add(test::OggPage(3).granule(~uint64_t{0}).sequence(9).flags(5).packet(Bytes(300, 1)));
    file.add(test::OggPage(3).packet({}).packet(Bytes(255, 2)).openPacket(Bytes(510, 3)));
    file.add(test::OggPage(4).version(1).checksum(77));
    file.addJunk(5);
    file.add(test::head(test::OggPage(4).packet(Bytes(100, 4)).bytes(), 60));
    const PagedFile pieces = splitIntoPages(file.bytes());
    ASSERT_EQ(pieces.size(), 5U) << "what is cut off joins the junk in front of it";
    EXPECT_EQ(pieces[1].packets[0].size(), 300U);
    EXPECT_EQ(pieces[2].packets.size(), 3U);
    EXPECT_TRUE(pieces[2].isOpen);
    EXPECT_EQ(joinPages(pieces), file.bytes());
}

TEST(PagedFileTest, PacketsBeyond255SegmentsAreLeftOut) {
    FilePiece page;
    page.isPage = true;
    page.packets.assign(300, Bytes(1, 0));
    EXPECT_EQ(splitIntoPages(joinPages({page}))[0].packets.size(), 255U);
}

TEST(SessionMutatorTest, TheSameSeedMakesTheSameChange) {
    for (uint32_t seed = 0; seed < 50; ++seed) {
        EXPECT_EQ(SessionMutator(addOne, seed).mutate(validInput(), kMaxSize),
                  SessionMutator(addOne, seed).mutate(validInput(), kMaxSize));
    }
}

TEST(SessionMutatorTest, MostChangesKeepThePagesWhole) {
    uint32_t whole = 0;
    uint32_t changed = 0;
    for (uint32_t seed = 0; seed < kSeeds; ++seed) {
        const Bytes mutated = SessionMutator(addOne, seed).mutate(validInput(), kMaxSize);
        EXPECT_LE(mutated.size(), kMaxSize);
        changed += mutated != validInput() ? 1 : 0;
        const PagedFile pieces = splitIntoPages(SessionInput(mutated.data(), mutated.size()).file);
        whole += junkIn(pieces) == 0 ? 1 : 0;
    }
    EXPECT_GT(changed, kSeeds * 9 / 10);
    EXPECT_GT(whole, kSeeds * 6 / 10);
}

TEST(SessionMutatorTest, ChangesWithoutNumberStayWithinTheirSize) {
    Bytes input = validInput();
    for (uint32_t seed = 0; seed < kSeeds; ++seed) {
        input = SessionMutator(addOne, seed).mutate(input, kMaxSize);
        ASSERT_LE(input.size(), kMaxSize);
    }
}

TEST(SessionMutatorTest, ACrossHoldsPagesOfBoth) {
    SessionInput other;
    other.file = test::OggPage(0xABCDEF).packet(Bytes(40, 9)).bytes();
    uint32_t withBoth = 0;
    for (uint32_t seed = 0; seed < kSeeds; ++seed) {
        const Bytes crossed =
                SessionMutator(addOne, seed).cross(validInput(), other.bytes(), kMaxSize);
        ASSERT_LE(crossed.size(), kMaxSize);
        const PagedFile pieces = splitIntoPages(SessionInput(crossed.data(), crossed.size()).file);
        withBoth += std::any_of(pieces.begin(), pieces.end(),
                                [](const FilePiece& piece) { return piece.serialNo == 0xABCDEF; })
                            ? 1
                            : 0;
    }
    EXPECT_GT(withBoth, kSeeds / 5);
}

}  // namespace
}  // namespace android::ogm::fuzz
