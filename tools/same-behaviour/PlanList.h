// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "Plan.h"

namespace android::ogm::trace {

/** All sessions of a run: samples, inputs of the fuzz target, and generated ones. */
class PlanList {
  public:
    struct Settings {
        /** Folders. */
        std::string samples;
        std::vector<std::string> corpora;
        size_t generated = 0;
        uint64_t seed = 0;
    };

    explicit PlanList(const Settings& settings);

    size_t size() const;
    /** Returns the same plan each time. */
    Plan plan(size_t index) const;

  private:
    Plan samplePlan(size_t index) const;
    Plan corpusPlan(size_t index) const;
    Plan generatedPlan(size_t index) const;

    struct File {
        std::string name;
        Bytes bytes;
    };
    static std::vector<File> filesOf(const std::filesystem::path& folder);

    const Settings mSettings;
    std::vector<File> mSamples;
    std::vector<File> mCorpus;
};

}  // namespace android::ogm::trace
