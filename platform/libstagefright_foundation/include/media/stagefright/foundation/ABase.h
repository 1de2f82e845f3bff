// SPDX-License-Identifier: Apache-2.0
#pragma once

/** In a class: its objects cannot be copied. The caller adds the semicolon. */
#define DISALLOW_EVIL_CONSTRUCTORS(name) \
    name(const name&) = delete;          \
    name& operator=(const name&) = delete
