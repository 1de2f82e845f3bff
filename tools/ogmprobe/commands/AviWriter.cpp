// SPDX-License-Identifier: Apache-2.0
#include "commands/AviWriter.h"

#include <algorithm>
#include <utility>

#include "codecs/LittleEndian.h"
#include "text/TimeUnits.h"

namespace ogmprobe {
namespace {

// A chunk's size does not include its own name and size.
constexpr uint64_t kChunkHead = 8;
constexpr uint64_t kMainHeader = 56;
constexpr uint64_t kStreamHeader = 56;
constexpr uint64_t kBitmapHeader = 40;
constexpr uint64_t kStreamList = 4 + 2 * kChunkHead + kStreamHeader + kBitmapHeader;
constexpr uint64_t kHeaderList = 4 + kChunkHead + kMainHeader + kChunkHead + kStreamList;
/** Up to and including the name of the list of frames. */
constexpr uint64_t kFileHeader = 12 + kChunkHead + kHeaderList + kChunkHead + 4;
constexpr uint64_t kIndexEntry = 16;

constexpr uint64_t kHasIndex = 0x10;
constexpr uint64_t kKeyFrame = 0x10;
constexpr uint64_t kBitsPerPixel = 24;

constexpr const char* kFrameChunk = "00dc";

uint64_t positive(const std::optional<int32_t>& value) {
    return static_cast<uint64_t>(std::max(value.value_or(0), 0));
}

LittleEndian mainHeader(uint64_t rate, uint64_t frames, uint64_t largest, uint64_t width,
                        uint64_t height) {
    LittleEndian header;
    header.text("avih").u32(kMainHeader).u32(kUsPerSecond / rate).u32(0).u32(0).u32(kHasIndex);
    header.u32(frames).u32(0).u32(1).u32(largest).u32(width).u32(height);
    return header.u32(0).u32(0).u32(0).u32(0);
}

LittleEndian streamHeader(const std::string& fourcc, uint64_t rate, uint64_t frames,
                          uint64_t largest, uint64_t width, uint64_t height) {
    constexpr uint64_t kDefaultQuality = 0xffffffff;
    LittleEndian header;
    header.text("strh").u32(kStreamHeader).text("vids").text(fourcc).u32(0).u32(0).u32(0);
    header.u32(1).u32(rate).u32(0).u32(frames).u32(largest).u32(kDefaultQuality).u32(0);
    return header.u16(0).u16(0).u16(width).u16(height);
}

LittleEndian bitmapHeader(const std::string& fourcc, uint64_t width, uint64_t height) {
    LittleEndian header;
    header.text("strf").u32(kBitmapHeader).u32(kBitmapHeader).u32(width).u32(height).u16(1);
    header.u16(kBitsPerPixel).text(fourcc).u32(width * height * kBitsPerPixel / 8);
    return header.u32(0).u32(0).u32(0).u32(0);
}

void append(std::vector<uint8_t>& bytes, const LittleEndian& more) {
    bytes.insert(bytes.end(), more.bytes().begin(), more.bytes().end());
}

}  // namespace

AviWriter::AviWriter(NewFile& file, const TrackDescription& track, std::string fourcc)
    : StreamWriter(file), mTrack(track), mFourcc(std::move(fourcc)) {
    file.append(header());
}

void AviWriter::write(const Packet& packet) {
    const uint64_t size = packet.bytes.size();
    LittleEndian head;
    head.text(kFrameChunk).u32(size);
    file().append(head.bytes());
    file().append(packet.bytes);
    // Chunks begin at even offsets; the filler byte is not counted.
    if (size % 2 != 0) {
        file().append(std::vector<uint8_t>{0});
    }
    // Offsets in the index are relative to the list's name.
    mFrames.push_back({4 + mDataSize, size, packet.isSync});
    mDataSize += kChunkHead + size + size % 2;
    mLargest = std::max(mLargest, size);
}

void AviWriter::finish() {
    LittleEndian index;
    index.text("idx1").u32(kIndexEntry * mFrames.size());
    for (const Frame& frame : mFrames) {
        index.text(kFrameChunk).u32(frame.isSync ? kKeyFrame : 0).u32(frame.offset);
        index.u32(frame.size);
    }
    file().append(index.bytes());
    file().overwriteStart(header());
}

std::vector<uint8_t> AviWriter::header() const {
    const uint64_t rate = std::max<uint64_t>(positive(mTrack.frameRate), 1);
    const uint64_t width = positive(mTrack.width);
    const uint64_t height = positive(mTrack.height);
    const uint64_t frames = mFrames.size();
    const uint64_t whole = kFileHeader - kChunkHead + mDataSize + kChunkHead + kIndexEntry * frames;
    LittleEndian start;
    start.text("RIFF").u32(whole).text("AVI ").text("LIST").u32(kHeaderList).text("hdrl");
    std::vector<uint8_t> bytes = start.bytes();
    append(bytes, mainHeader(rate, frames, mLargest, width, height));
    LittleEndian list;
    append(bytes, list.text("LIST").u32(kStreamList).text("strl"));
    append(bytes, streamHeader(mFourcc, rate, frames, mLargest, width, height));
    append(bytes, bitmapHeader(mFourcc, width, height));
    LittleEndian movie;
    append(bytes, movie.text("LIST").u32(4 + mDataSize).text("movi"));
    return bytes;
}

}  // namespace ogmprobe
