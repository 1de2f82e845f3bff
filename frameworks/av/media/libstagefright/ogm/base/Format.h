// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <media/NdkMediaFormat.h>

#include <memory>

namespace android::ogm {

struct FormatDeleter {
    void operator()(AMediaFormat* format) const { AMediaFormat_delete(format); }
};

/** Owns a media format. */
using FormatPtr = std::unique_ptr<AMediaFormat, FormatDeleter>;

}  // namespace android::ogm
