// SPDX-License-Identifier: Apache-2.0
#include "TableReporter.h"

#include <fmt/core.h>
#include <fmt/ostream.h>

#include "Meter.h"

namespace android::ogm::bench {

namespace {

/** A counter of a benchmark, and how it is shown. */
struct Column {
    const char* counter;
    const char* title;
    int decimals;
    double scale;
};

constexpr Column kColumns[] = {
        {kItems, "items", 0, 1},
        {kBestNs, "ns, best", 1, 1},
        {kMeanNs, "ns, mean", 1, 1},
        {kThroughput, "MB/s", 0, 1e-6},
        {kInstructions, "instr.", 0, 1},
        {kAllocations, "allocs", 2, 1},
        {kReadsPerPage, "reads/page", 2, 1},
        {kMedianUs, "us, median", 1, 1},
        {kNinetyFifthUs, "us, 95 %", 1, 1},
        {kPeakKiB, "peak KiB", 0, 1},
};

constexpr int kNameWidth = 34;
constexpr int kColumnWidth = 11;

constexpr const char* kRead = "/time_order";
/** A benchmark with which the read in time order is compared, and the text for it. */
constexpr struct {
    const char* name;
    const char* text;
} kYardsticks[] = {
        {"/sequential_read", "a sequential read"},
        {"/payload_copy", "a copy of the payload"},
        {"/libogg_walk", "libogg's walk"},
        {"/time_order_null_logger", "the same with all lines logged"},
        {"/track_0_then_1", "track 0, then track 1"},
        {"/track_1_then_0", "track 1, then track 0"},
};

}  // namespace

bool TableReporter::ReportContext(const Context& /* context */) {
    std::ostream& out = GetOutputStream();
    fmt::print(out, "{:<{}}", "", kNameWidth);
    for (const Column& column : kColumns) {
        fmt::print(out, "{:>{}}", column.title, kColumnWidth);
    }
    fmt::print(out, "\n");
    return true;
}

void TableReporter::ReportRuns(const std::vector<Run>& runs) {
    for (const Run& run : runs) {
        printRun(run);
    }
    GetOutputStream().flush();
}

void TableReporter::printRun(const Run& run) {
    std::ostream& out = GetOutputStream();
    const std::string name =
            run.run_name.function_name + (run.run_name.args.empty() ? "" : "/" + run.run_name.args);
    fmt::print(out, "{:<{}}", name, kNameWidth);
    if (run.error_occurred) {
        fmt::print(out, "  failed: {}\n", run.error_message);
        return;
    }
    for (const Column& column : kColumns) {
        const auto counter = run.counters.find(column.counter);
        const std::string text =
                counter == run.counters.end()
                        ? ""
                        : fmt::format("{:.{}f}", counter->second.value * column.scale,
                                      column.decimals);
        fmt::print(out, "{:>{}}", text, kColumnWidth);
    }
    fmt::print(out, "\n");
    if (const auto throughput = run.counters.find(kThroughput); throughput != run.counters.end()) {
        mThroughput[name] = throughput->second.value;
    }
}

void TableReporter::Finalize() {
    std::ostream& out = GetOutputStream();
    for (const auto& [name, throughput] : mThroughput) {
        const size_t slash = name.find('/');
        if (name.substr(slash) != kRead) {
            continue;
        }
        const std::string file = name.substr(0, slash);
        fmt::print(out, "\n{}, read in time order, is\n", file);
        for (const auto& yardstick : kYardsticks) {
            if (const auto other = mThroughput.find(file + yardstick.name);
                other != mThroughput.end()) {
                fmt::print(out, "  {:6.2f} times as fast as {}\n", throughput / other->second,
                           yardstick.text);
            }
        }
    }
    out.flush();
}

}  // namespace android::ogm::bench
