// SPDX-License-Identifier: Apache-2.0
#pragma once

namespace ogmprobe {

/** Why a packet or frame of the file is not returned. */
enum class LossReason {
    kNoTrack,
    kNotPlayed,
    // Pages.
    kLastPage,
    kReadingStopped,
    kPassedOver,
    // Packets.
    kGranuleFell,
    kWithoutContent,
    kAfterStuckPacket,
    kEndReportedFirst,
    kStaysQueued,
    // Frames.
    kPieceTooShort,
    kNoSync,
    kNotConfirmed,
    kRateChanged,
    kUnlikeFirst,
    kWithoutSize,
    kFirstFrame,
    kPacketHeader,
    kInFrameBefore,
    kWaitsForBytes,
    kFalseFrame,
    kUnknown,
};

constexpr LossReason lastOf(LossReason) {
    return LossReason::kUnknown;
}

struct LossText {
    /** Identifier for programs; never changes. */
    const char* id;
    /** In a few words, after a number: "4 on pages that are not read". */
    const char* brief;
    /** As a sentence; null if another finding reports it. */
    const char* text;
    /** The same for every such file. */
    bool usual;
};

const LossText& textOf(LossReason reason);

}  // namespace ogmprobe
