// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <stdint.h>

/** A duration or a point in time, in nanoseconds. */
typedef int64_t nsecs_t;
