// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>
#include <vector>

#include "PluginTest.h"

namespace android::ogm::test {

inline constexpr size_t kPackets = 200;
inline constexpr int64_t kPacketUs = 40000;

inline LogLine stopLine(int32_t stopped, int32_t selected) {
    return infoLine(formatted("trackStop:serialNo=%d, mSelectedSerialNo=%d", stopped, selected));
}

inline LogLine alreadyStarted(int32_t serialNo) {
    return errorLine(formatted("[start] Error, the serialNo[%d] is already started!!!", serialNo));
}

inline LogLine resetLine(int32_t serialNo) {
    return infoLine(formatted("OgmTrack:mSerialNo[%d] signalDiscontinuity!", serialNo));
}

/** Creates, starts, stops and frees PCM tracks in various orders. */
class LifecycleTest : public PluginTest {
  protected:
    /** 8 seconds. Packet `index` of each stream has its own bytes and the time index x 40 ms. */
    static OgmFile fileWith(const std::vector<uint32_t>& serialNos) {
        OgmFile file;
        for (const uint32_t serialNo : serialNos) {
            file.addHeader(serialNo, AudioHeader());
        }
        for (size_t i = 0; i < kPackets; ++i) {
            for (size_t stream = 0; stream < serialNos.size(); ++stream) {
                file.addData(serialNos[stream], (i + 1) * 320, audioPacket(payload(stream, i)));
            }
        }
        return file;
    }

    static Bytes payload(size_t stream, size_t index) {
        return pattern(20, static_cast<uint32_t>(stream * 1000 + index));
    }

    /** Whether a seek of this track moves the file. */
    bool movesTheFile(Track& track) {
        mEvents.clear();
        track.readAt(0);
        return mEvents.holds(debugLine("Start seekToTime"));
    }

    /** The lines about tracks since the log was cleared. */
    std::vector<LogLine> trackLines() const {
        std::vector<LogLine> lines;
        for (const LogLine& line : mEvents.lines()) {
            for (const char* prefix :
                 {"OgmTrack:[", "trackStop:", "[start] Error", "Track Type[5] d", "~OgmTrack"}) {
                if (line.text.rfind(prefix, 0) == 0) {
                    lines.push_back(line);
                }
            }
        }
        return lines;
    }
};

}  // namespace android::ogm::test
