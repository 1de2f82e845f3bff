// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <media/NdkMediaError.h>
#include <utils/Errors.h>

namespace android {

/**
 * Converts a status to that of the plug-in interface. A value without a counterpart, such as
 * WOULD_BLOCK, becomes AMEDIA_ERROR_UNKNOWN and is logged as an error.
 */
media_status_t toMediaStatus(status_t status);

}  // namespace android
