// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "PlanList.h"
#include "Record.h"

namespace android::ogm::trace {

/** The result of a session. */
struct Digest {
    uint64_t digest;
    uint64_t events;

    bool operator==(const Digest& other) const {
        return digest == other.digest && events == other.events;
    }
};

struct RunSettings {
    Kinds leftOut = 0;
    uint64_t maxEvents = 0;
    size_t jobs = 1;
};

/**
 * Runs sessions with a plug-in, each in a separate process, so that even a crash is recorded. The
 * plug-in is loaded in a separate process too, so that several plug-ins can run one after the
 * other, each with the platform libraries beside it.
 */
class Runner {
  public:
    /** Throws if the plug-in cannot be loaded. */
    Runner(std::string plugin, const PlanList& plans, const RunSettings& settings);

    std::vector<Digest> digests() const;
    /** Returns the whole record of a session, one line per event. */
    std::vector<std::string> lines(size_t session) const;

  private:
    const std::string mPlugin;
    const PlanList& mPlans;
    const RunSettings mSettings;
};

}  // namespace android::ogm::trace
