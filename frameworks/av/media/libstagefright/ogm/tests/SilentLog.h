// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <android/log.h>

namespace android::ogm::test {

/** During its lifetime nothing is logged or formatted. */
class SilentLog {
  public:
    SilentLog() : mBefore(__android_log_set_minimum_priority(ANDROID_LOG_SILENT)) {}
    ~SilentLog() { __android_log_set_minimum_priority(mBefore); }
    SilentLog(const SilentLog&) = delete;
    SilentLog& operator=(const SilentLog&) = delete;

  private:
    int32_t mBefore;
};

}  // namespace android::ogm::test
