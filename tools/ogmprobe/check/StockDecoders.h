// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string_view>
#include <vector>

#include "check/Decoder.h"

namespace ogmprobe::check {

/** The software decoders that Android 13 brings to every device. */
DecoderList stockDecoders();

/**
 * The profiles that a decoder of Android's own takes, as they are called in headers of streams,
 * none for other decoders, whose lists do not tell.
 */
std::vector<std::string_view> profilesOf(std::string_view decoder);

}  // namespace ogmprobe::check
