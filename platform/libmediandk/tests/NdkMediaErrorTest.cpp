// SPDX-License-Identifier: Apache-2.0
#include <media/NdkMediaError.h>

#include <type_traits>

static_assert(AMEDIA_OK == 0);
static_assert(AMEDIA_ERROR_BASE == -10000);
static_assert(AMEDIA_ERROR_UNKNOWN == -10000);
static_assert(AMEDIA_ERROR_MALFORMED == -10001);
static_assert(AMEDIA_ERROR_UNSUPPORTED == -10002);
static_assert(AMEDIA_ERROR_INVALID_OBJECT == -10003);
static_assert(AMEDIA_ERROR_INVALID_PARAMETER == -10004);
static_assert(AMEDIA_ERROR_INVALID_OPERATION == -10005);
static_assert(AMEDIA_ERROR_END_OF_STREAM == -10006);
static_assert(AMEDIA_ERROR_IO == -10007);
static_assert(AMEDIA_ERROR_WOULD_BLOCK == -10008);

static_assert(std::is_enum_v<media_status_t>);
static_assert(sizeof(media_status_t) == sizeof(int));
static_assert(std::is_convertible_v<media_status_t, int>, "not a scoped enum");
