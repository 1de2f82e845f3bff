/* SPDX-License-Identifier: Apache-2.0 */
#pragma once

/*
 * Names of media format entries that the vendor's decoders read and the platform does not know. A
 * plug-in that uses one can only be loaded if the vendor's library is installed.
 */

#ifdef __cplusplus
extern "C" {
#endif
#pragma GCC visibility push(default)

/** Layer of an MPEG audio track. */
extern const char* AMEDIAFORMAT_KEY_MPEG_AUD_LAYER;

#pragma GCC visibility pop
#ifdef __cplusplus
}
#endif
