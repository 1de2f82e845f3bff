// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <nlohmann/json_fwd.hpp>

#include "check/Decoder.h"

namespace ogmprobe::check {

nlohmann::ordered_json toJson(const Decoder& decoder);
/** Throws the exceptions of `nlohmann::json` if the JSON is not that of a decoder. */
Decoder decoderOf(const nlohmann::ordered_json& json);

}  // namespace ogmprobe::check
