// SPDX-License-Identifier: Apache-2.0
#pragma once

// Status values of the framework: 0 is success, errors are negative. Most are negated errno
// values; the media errors continue the range in <media/stagefright/MediaErrors.h>.

#include <errno.h>
#include <stdint.h>

namespace android {

typedef int32_t status_t;

enum : int32_t {
    OK = 0,
    NO_ERROR = OK,

    UNKNOWN_ERROR = INT32_MIN,
    BAD_TYPE = UNKNOWN_ERROR + 1,

    PERMISSION_DENIED = -EPERM,
    NAME_NOT_FOUND = -ENOENT,
    WOULD_BLOCK = -EWOULDBLOCK,
    NO_MEMORY = -ENOMEM,
    ALREADY_EXISTS = -EEXIST,
    NO_INIT = -ENODEV,
    BAD_VALUE = -EINVAL,
    INVALID_OPERATION = -ENOSYS,
    NOT_ENOUGH_DATA = -ENODATA,
    BAD_INDEX = -EOVERFLOW,
    TIMED_OUT = -ETIMEDOUT,
};

}  // namespace android
