// SPDX-License-Identifier: Apache-2.0
#include <media/NdkMediaFormatZor.h>

const char* AMEDIAFORMAT_KEY_MPEG_AUD_LAYER = "mpeg-aud-layer";
