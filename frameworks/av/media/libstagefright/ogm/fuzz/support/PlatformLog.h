// SPDX-License-Identifier: Apache-2.0
#pragma once

/**
 * Replaces the platform's log in the fuzz targets. Intended assertions are thrown as IntendedEnd,
 * all others are findings. Nothing is written.
 */
namespace android::ogm::fuzz {

/** Gets the format of each line before it is composed. */
class LogObserver {
  public:
    virtual ~LogObserver() = default;
    virtual void onLogLine(const char* format) = 0;
};

/** One at a time; null for none. */
void setLogObserver(LogObserver* observer);

/** Whether texts are composed, which lets the sanitizers check their arguments; slow. */
void setLogComposed(bool composed);

}  // namespace android::ogm::fuzz
