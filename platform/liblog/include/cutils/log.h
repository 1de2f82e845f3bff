/* SPDX-License-Identifier: Apache-2.0 */
#pragma once

/* Another path of <log/log.h>. */
#include <log/log.h>
