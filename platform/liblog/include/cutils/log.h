/* SPDX-License-Identifier: Apache-2.0 */
#pragma once

/* Another name of the log macros. */
#include <log/log.h>
