// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string_view>

namespace ogmprobe::check {

extern const std::string_view kReportPage;
extern const std::string_view kReportSheet;
extern const std::string_view kReportScript;

}  // namespace ogmprobe::check
