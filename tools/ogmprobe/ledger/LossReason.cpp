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
        {"page-passed-over", "on skipped pages",
         "reading jumps at an unreadable page header and skips their pages", false},
        {"granule-fell", "dropped at a falling granule position", nullptr, false},
        {"packet-without-content", "too short to be returned",
         "the packet is shorter than the header that the plug-in removes, so it cannot be "
         "returned, stays at the head of the queue, and the track ends there",
         false},
        {"behind-stuck-packet", "waiting for one that is too short",
         "they wait for a packet that is too short to be returned", false},
        {"end-reported-first", "queued when the end is reported",
         "the read that queues them reaches the end of the file with none ready, and reports "
         "the end of the stream; only a reader that continues gets them",
         false},
        {"stays-queued", "left in the queue", nullptr, true},
        {"audio-packet-too-short", "in packets of 3 bytes or less",
         "the plug-in treats packets of 3 bytes or less as empty", false},
        {"audio-without-sync", "dropped for lack of a sync word", nullptr, false},
        {"audio-unconfirmed", "never confirmed", nullptr, false},
        {"audio-rate-change", "of another sampling rate",
         "they have another sampling rate, version or layer than the first frame, and the plug-in "
         "accepts only frames like that one",
         false},
        {"audio-unlike-first-frame", "dropped as unlike the first", nullptr, false},
        {"audio-frame-without-size", "dropped at an invalid header", nullptr, false},
        {"first-audio-frame-lost", "dropped as the first",
         "the first frame is dropped when the second one confirms the stream's header, so the "
         "sound begins one frame late",
         false},
        {"audio-packet-header", "cut by the packet header's size",
         "the plug-in removes headers of a wrong size from their packets, so bytes are missing, or "
         "foreign ones come first",
         false},
        {"inside-frame-before", "begun in the buffer before",
         "the buffer before each took its first bytes, so its beginning is not found", false},
        {"waits-for-bytes", "waiting for more bytes",
         "the end of a frame is only found by the bytes after it, and there are none", true},
        {"false-frame", "replaced by a false frame",
         "a buffer that is no frame of the file is returned in their place", false},
        {"unknown", "missing for no known reason", "no reason is known", false},
}};

}  // namespace

const LossText& textOf(LossReason reason) {
    return kTexts[static_cast<size_t>(reason)];
}

}  // namespace ogmprobe
