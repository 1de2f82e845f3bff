// SPDX-License-Identifier: Apache-2.0
#include "ledger/FrameWalk.h"

#include <algorithm>
#include <optional>

namespace ogmprobe {
namespace {

constexpr uint64_t kSearchWindow = 4096;

class FrameWalk {
  public:
    FrameWalk(AudioFraming framing, StreamBytes& stream, const std::vector<uint64_t>& boundaries)
        : mFraming(framing), mStream(stream), mBoundaries(boundaries) {}

    std::vector<WalkedFrame> frames() {
        std::vector<WalkedFrame> found;
        uint64_t position = 0;
        while (const auto next = nextHeader(position)) {
            const auto frame = measured(*next, found);
            if (frame) {
                found.push_back(*frame);
            }
            position = frame ? frame->position + frame->size : *next + 1;
        }
        return found;
    }

  private:
    /** Returns where the next header from the position on begins. */
    std::optional<uint64_t> nextHeader(uint64_t position) {
        while (position < mStream.size()) {
            const auto window = mStream.at(position, kSearchWindow + kAudioHeaderBytes);
            const size_t places = std::min<size_t>(window.size(), kSearchWindow);
            for (size_t i = 0; i < places; ++i) {
                if (audioFrameAt(mFraming, window.subspan(i))) {
                    return position + i;
                }
            }
            position += places;
        }
        return std::nullopt;
    }

    std::optional<AudioFrame> headerAt(uint64_t position) {
        return audioFrameAt(mFraming, mStream.at(position, kAudioHeaderBytes));
    }

    /** Returns the frame if there is a complete one. */
    std::optional<WalkedFrame> measured(uint64_t position, const std::vector<WalkedFrame>& before) {
        const AudioFrame header = *headerAt(position);
        const uint64_t end = position + header.size;
        if (end <= mStream.size() &&
            (isConfirmed(header, end) || follows(position, header, before))) {
            return WalkedFrame{position, header.size, header};
        }
        // A DTS sync word always begins a frame, whatever its size field says.
        if (mFraming != AudioFraming::kDts) {
            return std::nullopt;
        }
        const uint64_t next = nextHeader(position + 4).value_or(mStream.size());
        return WalkedFrame{position, next - position, header};
    }

    bool isConfirmed(const AudioFrame& header, uint64_t end) {
        if (end == mStream.size() ||
            std::binary_search(mBoundaries.begin(), mBoundaries.end(), end)) {
            return true;
        }
        const auto next = headerAt(end);
        return next && (next->family == header.family || mFraming != AudioFraming::kMpegAudio);
    }

    bool follows(uint64_t position, const AudioFrame& header,
                 const std::vector<WalkedFrame>& before) const {
        return mFraming != AudioFraming::kDts && !before.empty() &&
               before.back().position + before.back().size == position &&
               before.back().header.family == header.family;
    }

    const AudioFraming mFraming;
    StreamBytes& mStream;
    const std::vector<uint64_t>& mBoundaries;
};

}  // namespace

std::vector<WalkedFrame> walkFrames(AudioFraming framing, StreamBytes& stream,
                                    const std::vector<uint64_t>& boundaries) {
    return FrameWalk(framing, stream, boundaries).frames();
}

}  // namespace ogmprobe
