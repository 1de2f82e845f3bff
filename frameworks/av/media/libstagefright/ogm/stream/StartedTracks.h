// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <algorithm>
#include <cstdint>
#include <map>

namespace android::ogm {

// The log lines of StartedTracks.
void logAlreadyStarted(int32_t serialNo);
void logTrackStop(int32_t serialNo, int32_t selectedSerialNo);

/**
 * Maps the serial numbers of streams to the tracks that receive their packets, and knows the
 * selected stream, whose seeks move the cursor. It does not own the tracks: each must be stopped or
 * passed to forget() before it is destroyed.
 *
 * `Track` needs resetPageState(), signalDiscontinuity() and currentTimeUs().
 */
template <typename Track>
class StartedTracks {
  public:
    struct Entry {
        bool isRegistered = false;
        /** Null for a stream that is not registered, or whose track was destroyed. */
        Track* track = nullptr;
    };

    /** Registers a new track; replaces another track of the same stream. */
    void add(uint32_t serialNo, Track* track) {
        mStartedTracks[serialNo] = track;
        selectIfNone(static_cast<int32_t>(serialNo));
    }

    /** Registers a track unless its stream has one. Returns whether it was registered. */
    bool trackStart(int32_t serialNo, Track* track) {
        selectIfNone(serialNo);
        const bool added = mStartedTracks.emplace(static_cast<uint32_t>(serialNo), track).second;
        if (!added) {
            logAlreadyStarted(serialNo);
        }
        return added;
    }

    /** Removes the stream. If it was selected, the first of the others becomes selected. */
    void trackStop(int32_t serialNo) {
        mStartedTracks.erase(static_cast<uint32_t>(serialNo));
        if (mSelectedSerialNo == serialNo) {
            mSelectedSerialNo = mStartedTracks.empty()
                                        ? kNoSerialNo
                                        : static_cast<int32_t>(mStartedTracks.begin()->first);
        }
        logTrackStop(serialNo, mSelectedSerialNo);
    }

    /** To be called when the track is destroyed. Its stream stays registered. */
    void forget(const Track* track) {
        for (auto& [serialNo, registered] : mStartedTracks) {
            if (registered == track) {
                registered = nullptr;
            }
        }
    }

    Entry find(uint32_t serialNo) const {
        const auto entry = mStartedTracks.find(serialNo);
        return entry == mStartedTracks.end() ? Entry{} : Entry{true, entry->second};
    }

    bool isSelected(uint32_t serialNo) const {
        return static_cast<uint32_t>(mSelectedSerialNo) == serialNo;
    }

    // The following apply to all tracks, in the order of their serial numbers.

    void resetPageState(bool isPastFirstDataPage) {
        forEach([=](Track& track) { track.resetPageState(isPastFirstDataPage); });
    }

    void signalDiscontinuity() {
        forEach([](Track& track) { track.signalDiscontinuity(); });
    }

    /** The latest time that any track has reached, in us; 0 while that of one is unknown. */
    int64_t getCurrentTimeUs() const {
        int64_t latest = 0;
        bool isKnown = true;
        forEach([&](const Track& track) {
            const int64_t timeUs = track.currentTimeUs();
            isKnown = isKnown && timeUs != 0;
            latest = std::max(latest, timeUs);
        });
        return isKnown ? latest : 0;
    }

  private:
    static constexpr int32_t kNoSerialNo = -1;

    void selectIfNone(int32_t serialNo) {
        if (mSelectedSerialNo == kNoSerialNo) {
            mSelectedSerialNo = serialNo;
        }
    }

    template <typename Action>
    void forEach(const Action& action) const {
        for (const auto& [serialNo, track] : mStartedTracks) {
            if (track != nullptr) {
                action(*track);
            }
        }
    }

    std::map<uint32_t, Track*> mStartedTracks;
    int32_t mSelectedSerialNo = kNoSerialNo;
};

}  // namespace android::ogm
