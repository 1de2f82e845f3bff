// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <utils/Errors.h>

namespace android {

/** Status values (status_t) of media components, in addition to the general ones. */
enum {
    MEDIA_ERROR_BASE = -1000,

    ERROR_IO = MEDIA_ERROR_BASE - 4,
    ERROR_MALFORMED = MEDIA_ERROR_BASE - 7,
    ERROR_OUT_OF_RANGE = MEDIA_ERROR_BASE - 8,
    ERROR_UNSUPPORTED = MEDIA_ERROR_BASE - 10,
    ERROR_END_OF_STREAM = MEDIA_ERROR_BASE - 11,

    /** Not an error: the format changes from here on. */
    INFO_FORMAT_CHANGED = MEDIA_ERROR_BASE - 12,
};

}  // namespace android
