// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>
#include <vector>

#include "commands/StreamWriter.h"

namespace ogmprobe {

/**
 * Writes video into an AVI file, for codecs whose bare streams no player recognises. Frames follow
 * at the track's frame rate; the format cannot hold their own times.
 */
class AviWriter : public StreamWriter {
  public:
    /** The FOURCC is that of the codec. */
    AviWriter(NewFile& file, const TrackDescription& track, std::string fourcc);

    void write(const Packet& packet) override;
    void finish() override;

  private:
    struct Frame {
        uint64_t offset;
        uint64_t size;
        bool isSync;
    };

    std::vector<uint8_t> header() const;

    const TrackDescription mTrack;
    const std::string mFourcc;
    std::vector<Frame> mFrames;
    uint64_t mDataSize = 0;
    uint64_t mLargest = 0;
};

}  // namespace ogmprobe
