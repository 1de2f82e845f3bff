// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "EventLog.h"

namespace android::ogm::test {

/** Records the log. */
class LogTest : public ::testing::Test {
  protected:
    EventLog mEvents;
    LogCapture mCapture{mEvents};
};

}  // namespace android::ogm::test
