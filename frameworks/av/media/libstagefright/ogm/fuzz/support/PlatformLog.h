// SPDX-License-Identifier: Apache-2.0
#pragma once

/**
 * Stands in for the platform's log in the fuzz targets. Assertions that are meant are thrown as
 * DemandedEnd, all others are findings. Nothing is written.
 */
namespace android::ogm::fuzz {

/** Sees the format of each line before it would be composed. */
class LogObserver {
  public:
    virtual ~LogObserver() = default;
    virtual void onLogLine(const char* format) = 0;
};

/** One at a time; null for none. */
void setLogObserver(LogObserver* observer);

/** Whether texts are composed, so that the sanitizers see their arguments; slow. */
void setLogComposed(bool composed);

}  // namespace android::ogm::fuzz
