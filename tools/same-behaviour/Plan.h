// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <sys/types.h>
#include <utils/Errors.h>

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "BufferGroup.h"
#include "Bytes.h"
#include "SessionInput.h"

/** The steps of a session. All are fixed before a plug-in is loaded. */
namespace android::ogm::trace {

using test::Bytes;

/** The behaviour of `getSize`. */
struct SizeAnswer {
    status_t status = OK;
    /** Nothing: no size is stored. */
    std::optional<int64_t> stored;
};

enum class Action : uint8_t {
    kSniff,
    /** Frees what was open before. */
    kOpen,
    kCountTracks,
    kFileFormat,
    kNullFileFormat,
    kFlags,
    kName,
    kMediaCas,
    /** `number` is the track's, `options` are the flags. */
    kTrackFormat,
    kNullTrackFormat,
    /** Makes a track in the next slot, after freeing what is there. */
    kGetTrack,

    // The slot's track.
    kStart,
    kStop,
    kGetFormat,
    kNullGetFormat,
    kNonBlocking,
    /** Reads up to `number` buffers, the first with `options` and `time`; stops if there is none.
     */
    kRead,
    kReadAndKeep,
    kReleaseKept,
    kFreeTrack,

    /** Seeks in each started track, to where the previous one landed. */
    kPlayerSeek,
    /** Reads all started tracks alternately, at most `number` times. */
    kDrain,
    /** The tracks in the slots stay. */
    kFreeExtractor,
};

/** Slots from this one on mean the slots that hold a track, in order and wrapping around. */
inline constexpr size_t kAnySlot = 8;

struct Step {
    Action action = Action::kSniff;
    size_t slot = 0;
    size_t number = 0;
    uint32_t options = 0;
    /** As the fuzz targets write times: absolute, near the end of the file, or an unusual one. */
    uint16_t time = 0;
};

struct Plan {
    /** Identifies the session and describes what is special in it. */
    std::string name;
    Bytes file;
    SizeAnswer size;
    std::vector<fuzz::Fault> faults;
    GroupFault groupFault;
    bool dumpAudio = false;
    bool dumpCanBeOpened = true;
    std::vector<Step> steps;
};

}  // namespace android::ogm::trace
