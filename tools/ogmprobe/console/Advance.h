// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <string_view>

namespace ogmprobe {

/** The progress of the work on a file. */
struct Advance {
    /** "opening", "reading". */
    std::string_view doing;
    uint64_t position = 0;
    /** 0: not known yet. */
    uint64_t size = 0;
};

}  // namespace ogmprobe
