// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <media/NdkMediaError.h>
#include <utils/Errors.h>

namespace android {

/**
 * The status as the plug-in interface reports it. A value that has no counterpart there,
 * WOULD_BLOCK among them, becomes AMEDIA_ERROR_UNKNOWN and is named by an error line.
 */
media_status_t toMediaStatus(status_t status);

}  // namespace android
