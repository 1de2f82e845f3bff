// SPDX-License-Identifier: Apache-2.0
#include "SampleLines.h"

#include <algorithm>
#include <cinttypes>

#include "JsonLine.h"

namespace ogmdump {

uint64_t digestOf(const uint8_t* bytes, size_t size) {
    constexpr uint64_t kBasis = 0xcbf29ce484222325;
    constexpr uint64_t kPrime = 0x100000001b3;
    uint64_t digest = kBasis;
    for (size_t i = 0; i < size; ++i) {
        digest = (digest ^ bytes[i]) * kPrime;
    }
    return digest;
}

void SampleLines::add(const Sample& sample) {
    Track& track = mTracks[sample.track];
    if (track.waiting) {
        Line& before = mLines[*track.waiting - mWritten];
        // Times may have any value: a difference that does not fit wraps.
        before.untilNextUs = static_cast<int64_t>(static_cast<uint64_t>(sample.timeUs) -
                                                  static_cast<uint64_t>(before.sample.timeUs));
        before.isComplete = true;
        track.waiting.reset();
    }
    if (++track.samples <= mCount) {
        track.waiting = mWritten + mLines.size();
        mLines.push_back({sample, std::nullopt, false});
    }
    writeComplete();
}

void SampleLines::end() {
    for (Line& line : mLines) {
        line.isComplete = true;
    }
    writeComplete();
    std::fill(mTracks.begin(), mTracks.end(), Track());
}

bool SampleLines::isFull() const {
    return std::all_of(mTracks.begin(), mTracks.end(),
                       [this](const Track& track) { return track.samples > mCount; });
}

void SampleLines::writeComplete() {
    while (!mLines.empty() && mLines.front().isComplete) {
        write(mLines.front());
        mLines.pop_front();
        ++mWritten;
    }
}

void SampleLines::write(const Line& line) {
    char digest[sizeof("0123456789abcdef")];
    std::snprintf(digest, sizeof(digest), "%016" PRIx64, line.sample.digest);
    const std::string text = JsonLine()
                                     .text("type", std::string("buffer"))
                                     .number("track", static_cast<int64_t>(line.sample.track))
                                     .number("time_us", line.sample.timeUs)
                                     .number("until_next_us", line.untilNextUs)
                                     .number("size", static_cast<int64_t>(line.sample.size))
                                     .flag("sync", line.sample.isSync)
                                     .text("digest", std::string(digest))
                                     .line();
    std::fprintf(mOut, "%s\n", text.c_str());
}

}  // namespace ogmdump
