// SPDX-License-Identifier: Apache-2.0
#include "explain/OggScanner.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>
#include <optional>
#include <string_view>

#include "ExitCode.h"
#include "codecs/Fields.h"

namespace ogmprobe {
namespace {

constexpr std::string_view kCapturePattern = "OggS";
constexpr std::string_view kCommentHeader = "\3vorbis";

// Offsets of the fields in a page header.
constexpr size_t kVersion = 4;
constexpr size_t kFlags = 5;
constexpr size_t kGranule = 6;
constexpr size_t kSerial = 14;
constexpr size_t kSequence = 18;
constexpr size_t kChecksum = 22;
constexpr size_t kSegmentCount = 26;
constexpr size_t kFixedSize = 27;

/** A lacing value below this one ends a packet. */
constexpr uint8_t kUnterminated = 255;

constexpr size_t kWindowSize = 1 << 18;

// Most significant bit first, as in Ogg.
constexpr std::array<uint32_t, 256> makeChecksumTable() {
    constexpr uint32_t kPolynomial = 0x04c11db7;
    std::array<uint32_t, 256> table{};
    for (uint32_t byte = 0; byte < table.size(); ++byte) {
        uint32_t value = byte << 24;
        for (int bit = 0; bit < 8; ++bit) {
            value = (value & 0x80000000U) != 0 ? value << 1 ^ kPolynomial : value << 1;
        }
        table[byte] = value;
    }
    return table;
}

constexpr auto kChecksumTable = makeChecksumTable();

/** The checksum's own field is treated as zero. */
uint32_t checksumOf(std::span<const uint8_t> page) {
    uint32_t value = 0;
    for (size_t i = 0; i < page.size(); ++i) {
        const uint8_t byte = i >= kChecksum && i < kSegmentCount ? 0 : page[i];
        value = value << 8 ^ kChecksumTable[value >> 24 ^ byte];
    }
    return value;
}

void readLacing(std::span<const uint8_t> lacing, OggPage& page, std::vector<OggPiece>& pieces) {
    page.firstPiece = pieces.size();
    uint32_t size = 0;
    for (size_t i = 0; i < lacing.size(); ++i) {
        size += lacing[i];
        const bool ends = lacing[i] != kUnterminated;
        page.packets += ends ? 1 : 0;
        if (ends || i + 1 == lacing.size()) {
            pieces.push_back({page.bodyOffset() + page.bodySize, size, 0, ends});
            page.bodySize += size;
            size = 0;
        }
    }
    page.endPiece = pieces.size();
    page.firstPieceSize = page.endPiece > page.firstPiece ? pieces[page.firstPiece].size : 0;
}

}  // namespace

std::span<const uint8_t> OggScanner::bytes(uint64_t offset, size_t count) {
    if (offset < mWindowOffset || offset + count > mWindowOffset + mWindow.size()) {
        mWindow.resize(std::max(count, kWindowSize));
        mWindowOffset = offset;
        const std::optional<size_t> got = mFile.read(offset, mWindow);
        if (!got) {
            throw ProbeError(ExitCode::kFile, std::string("cannot read: ") + std::strerror(errno));
        }
        mWindow.resize(*got);
    }
    const auto rest = std::span(mWindow).subspan(offset - mWindowOffset);
    return rest.first(std::min(count, rest.size()));
}

uint64_t OggScanner::findPage(uint64_t offset) {
    if (holdsAt(bytes(offset, kCapturePattern.size()), 0, kCapturePattern)) {
        return offset;
    }
    while (offset < size()) {
        const auto window = bytes(offset, kWindowSize);
        const void* found = memmem(window.data(), window.size(), kCapturePattern.data(),
                                   kCapturePattern.size());
        if (found != nullptr) {
            return offset +
                   static_cast<uint64_t>(static_cast<const uint8_t*>(found) - window.data());
        }
        if (window.size() < kWindowSize) {
            break;
        }
        // A pattern may begin with the window's last bytes.
        offset += window.size() - kCapturePattern.size() + 1;
    }
    return size();
}

OggPage OggScanner::page(uint64_t offset, std::vector<OggPiece>& pieces) {
    OggPage page;
    page.firstPiece = page.endPiece = pieces.size();
    page.offset = offset;
    page.headerSize = kFixedSize;
    const auto fixed = bytes(offset, kFixedSize);
    if (fixed.size() < kFixedSize) {
        page.missingBytes = kFixedSize - fixed.size();
        return page;
    }
    page.version = fixed[kVersion];
    page.flags = fixed[kFlags];
    page.granule = numberAt(fixed, kGranule, 8);
    page.serial = static_cast<uint32_t>(numberAt(fixed, kSerial, 4));
    page.sequence = static_cast<uint32_t>(numberAt(fixed, kSequence, 4));
    const auto checksum = static_cast<uint32_t>(numberAt(fixed, kChecksum, 4));
    page.headerSize += fixed[kSegmentCount];

    const auto header = bytes(offset, page.headerSize);
    readLacing(header.subspan(kFixedSize), page, pieces);
    const auto whole = bytes(offset, page.end() - offset);
    page.missingBytes = page.end() - offset - whole.size();
    page.checksumRight = page.missingBytes > 0 || checksumOf(whole) == checksum;
    if (whole.size() > page.headerSize) {
        const auto body = whole.subspan(page.headerSize);
        page.beginsWithComment = holdsAt(body, 0, kCommentHeader);
        if (page.beginsStream()) {
            page.announced = StreamHeader(body);
        }
    }
    return page;
}

}  // namespace ogmprobe
