// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string_view>
#include <vector>

#include "check/Decoder.h"

namespace ogmprobe::check {

/** Returns the software decoders that Android 13 has on every device. */
DecoderList stockDecoders();

/**
 * Returns the profiles of one of Android's own decoders, with the names in stream headers. Empty
 * for other decoders, whose lists do not include profiles.
 */
std::vector<std::string_view> profilesOf(std::string_view decoder);

}  // namespace ogmprobe::check
