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

/** What is done in a session. All of it is fixed before a plug-in is loaded. */
namespace android::ogm::trace {

using test::Bytes;

/** What `getSize` does. */
struct SizeAnswer {
    status_t status = OK;
    /** Nothing is stored without a value. */
    std::optional<int64_t> stored;
};

enum class Action : uint8_t {
    kSniff,
    /** Frees what is open before. */
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
    /** Makes a track that takes the next slot; whatever is there is freed. */
    kGetTrack,

    // The slot's track.
    kStart,
    kStop,
    kGetFormat,
    kNullGetFormat,
    kNonBlocking,
    /** Reads up to `number` buffers, with `options` and `time` on the first; ends without buffer.
     */
    kRead,
    kReadAndKeep,
    kReleaseKept,
    kFreeTrack,

    /** Seeks in each started track, each to where the one before landed. */
    kPlayerSeek,
    /** Reads all started tracks in turn, `number` times at most. */
    kDrain,
    /** The slots' tracks stay. */
    kFreeExtractor,
};

/** From here on a step's slot counts those that hold a track, and begins anew behind the last. */
inline constexpr size_t kAnySlot = 8;

struct Step {
    Action action = Action::kSniff;
    size_t slot = 0;
    size_t number = 0;
    uint32_t options = 0;
    /** In the notation of the fuzz targets: absolute, around the end of the file, or an odd one. */
    uint16_t time = 0;
};

struct Plan {
    /** Tells the session from others, and what is special in it. */
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
