// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <memory>

#include "CutterDriver.h"
#include "LogTest.h"
#include "stream/StreamTypes.h"

namespace android::ogm::test {

/** Cuts audio and records the log. */
class CutterTest : public LogTest {
  protected:
    /** A new cutter; clears the recorded log. */
    std::unique_ptr<CutterDriver> cutterOf(uint32_t streamType) {
        mEvents.clear();
        return std::make_unique<CutterDriver>(streamType);
    }
};

}  // namespace android::ogm::test
