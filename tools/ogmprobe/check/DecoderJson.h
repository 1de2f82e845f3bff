// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <nlohmann/json_fwd.hpp>

#include "check/Decoder.h"

namespace ogmprobe::check {

nlohmann::ordered_json toJson(const Decoder& decoder);
/** Throws what `nlohmann::json` throws for JSON that is none of a decoder. */
Decoder decoderOf(const nlohmann::ordered_json& json);

}  // namespace ogmprobe::check
