// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <benchmark/benchmark.h>

#include <map>
#include <string>
#include <vector>

namespace android::ogm::bench {

/**
 * Prints all results as one table, each line as soon as it is known. At the end compares the
 * reading of each file with its yardsticks.
 */
class TableReporter : public benchmark::BenchmarkReporter {
  public:
    bool ReportContext(const Context& context) override;
    void ReportRuns(const std::vector<Run>& runs) override;
    void Finalize() override;

  private:
    void printRun(const Run& run);

    /** Bytes per second of the best round, by name. */
    std::map<std::string, double> mThroughput;
};

}  // namespace android::ogm::bench
