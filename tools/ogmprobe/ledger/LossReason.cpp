// SPDX-License-Identifier: Apache-2.0
#include "ledger/LossReason.h"

#include <array>
#include <cstddef>

namespace ogmprobe {
namespace {

constexpr size_t kReasons = static_cast<size_t>(lastOf(LossReason{})) + 1;

constexpr std::array<LossText, kReasons> kTexts = {{
        {"no-track", "without a track", nullptr, false},
        {"not-played", "not played", nullptr, false},
        {"last-page", "on the stream's last page", nullptr, true},
        {"reading-stopped", "on pages not reached", nullptr, false},
        {"page-passed-over", "on pages passed over",
         "reading jumps at a page header that cannot be read, and passes over their pages", false},
        {"granule-fell", "dropped at a falling granule position", nullptr, false},
        {"packet-without-content", "too short to be handed out",
         "the packet is shorter than the header that the plug-in takes off, so it cannot be handed "
         "out, stays at the head of the queue, and the track ends there",
         false},
        {"behind-stuck-packet", "waiting for one that is too short",
         "they wait for a packet that is too short to be handed out", false},
        {"end-reported-first", "queued when the end is reported",
         "the read that queues them meets the end of the file with none ready before, and reports "
         "the end of the stream; only a reader that goes on reading gets them",
         false},
        {"stays-queued", "left in the queue", nullptr, true},
        {"audio-packet-too-short", "in packets of 3 bytes or less",
         "the plug-in takes packets of 3 bytes or less for empty ones", false},
        {"audio-without-sync", "dropped for lack of a sync word", nullptr, false},
        {"audio-unconfirmed", "never confirmed", nullptr, false},
        {"audio-rate-change", "of another sampling rate",
         "they have another sampling rate, version or layer than the first frame, and the plug-in "
         "takes only frames like that one",
         false},
        {"audio-unlike-first-frame", "dropped as unlike the first", nullptr, false},
        {"audio-frame-without-size", "dropped at an invalid header", nullptr, false},
        {"first-audio-frame-lost", "given up as the first",
         "the first frame is given up when the second one confirms the stream's header, so the "
         "sound begins one frame late",
         false},
        {"audio-packet-header", "cut by the packet header's size",
         "their packets have a header of another size than the plug-in takes off, so bytes of "
         "theirs are missing, or foreign ones stand in front of them",
         false},
        {"inside-frame-before", "begun in the buffer before",
         "the buffer in front of each took its first bytes with it, so its beginning is not found",
         false},
        {"waits-for-bytes", "waiting for more bytes",
         "the end of a frame is only seen by bytes that follow, and none do", true},
        {"false-frame", "replaced by a false frame",
         "a buffer that is no frame of the file comes out in their place", false},
        {"unknown", "missing for no known reason", "no reason is known", false},
}};

}  // namespace

const LossText& textOf(LossReason reason) {
    return kTexts[static_cast<size_t>(reason)];
}

}  // namespace ogmprobe
