// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <deque>
#include <limits>
#include <optional>
#include <string>
#include <vector>

namespace ogmdump {

/** The data of a sample's line. */
struct Sample {
    size_t track = 0;
    int64_t timeUs = 0;
    bool isSync = false;
    size_t size = 0;
    /** FNV-1a, 64 bits, of its bytes. */
    uint64_t digest = 0;
};

uint64_t digestOf(const uint8_t* bytes, size_t size);

/** Writes a line for each sample, in order. A line has the time until the next sample of the
 * track, so it waits for that sample or a call of `end`.
 */
class SampleLines {
  public:
    /** Maximum number of lines for each track. */
    SampleLines(FILE* out, size_t tracks, uint64_t count)
        : mOut(out), mCount(count), mTracks(tracks) {}

    void add(const Sample& sample);
    /** Writes all waiting lines; the count of samples starts again. */
    void end();
    /** Whether all tracks have all their lines, with complete data. */
    bool isFull() const;

  private:
    struct Line {
        Sample sample;
        std::optional<int64_t> untilNextUs;
        bool isComplete = false;
    };
    struct Track {
        uint64_t samples = 0;
        /** Number of its waiting line, counted from the first line of all. */
        std::optional<size_t> waiting;
    };

    void writeComplete();
    void write(const Line& line);

    FILE* const mOut;
    const uint64_t mCount;
    std::vector<Track> mTracks;
    std::deque<Line> mLines;
    size_t mWritten = 0;
};

}  // namespace ogmdump
