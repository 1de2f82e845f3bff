// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace ogmprobe {

/** "812 B", "6.5 kB", "2.0 MB": powers of 1000. */
std::string sizeText(uint64_t bytes);
/** "64 kbit/s", "1.20 Mbit/s". */
std::string rateText(double bitsPerSecond);
/** "1 packet", "2 packets". */
std::string counted(uint64_t number, std::string_view noun);

}  // namespace ogmprobe
