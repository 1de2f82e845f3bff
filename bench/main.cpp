// SPDX-License-Identifier: Apache-2.0
#include <android/log.h>
#include <benchmark/benchmark.h>
#include <CLI/CLI.hpp>

#include <exception>
#include <string>
#include <vector>

#include "BenchFile.h"
#include "InstructionCount.h"
#include "PeakMemory.h"
#include "TableReporter.h"

namespace {

using android::ogm::bench::BenchSizes;

struct Options {
    BenchSizes sizes{size_t{256} << 20, int64_t{10} << 20, int64_t{4} << 30};
    std::string jsonPath;
    std::string filter = ".*";
    double minTime = 1;
    std::string writePath;
    std::string readPath;
};

void addOptions(CLI::App& app, Options& options) {
    app.add_option("--size", options.sizes.file, "Bytes of each generated file")
            ->transform(CLI::AsSizeValue(false));
    app.add_option("--short-file", options.sizes.shortFile, "Bytes of the short file of length/*")
            ->transform(CLI::AsSizeValue(false));
    app.add_option("--long-file", options.sizes.longFile, "Bytes of the long file of length/*")
            ->transform(CLI::AsSizeValue(false));
    app.add_option("--json", options.jsonPath, "File that the results are also written to");
    app.add_option("--filter", options.filter, "Regular expression for the names to run");
    app.add_option("--min-time", options.minTime, "Seconds that each benchmark runs at least");
    app.add_option("--write", options.writePath,
                   "Only write the MPEG-4 and MP3 file, of --size bytes, to this path");
    app.add_option(android::ogm::bench::kReadOption, options.readPath,
                   "Only read this file once and print buffers and peak memory in KiB");
}

int runBenchmarks(const char* program, const Options& options) {
    std::vector<std::string> arguments = {
            program, "--benchmark_filter=" + options.filter,
            "--benchmark_min_time=" + std::to_string(options.minTime)};
    if (!options.jsonPath.empty()) {
        arguments.push_back("--benchmark_out=" + options.jsonPath);
        arguments.emplace_back("--benchmark_out_format=json");
    }
    std::vector<char*> pointers;
    pointers.reserve(arguments.size());
    for (std::string& argument : arguments) {
        pointers.push_back(argument.data());
    }
    auto count = static_cast<int>(pointers.size());
    android::ogm::bench::registerFileBenchmarks(options.sizes);
    android::ogm::bench::registerPartBenchmarks();
    benchmark::Initialize(&count, pointers.data());
    if (!android::ogm::bench::instructionCount()) {
        benchmark::AddCustomContext("instructions",
                                    "no counter here; scripts/bench --instructions counts them");
    }
    android::ogm::bench::TableReporter reporter;
    const size_t ran = benchmark::RunSpecifiedBenchmarks(&reporter);
    benchmark::Shutdown();
    return ran > 0 ? 0 : 1;
}

int run(int argc, char** argv) {
    CLI::App app("Measures the OGM extractor beside a plain read, a copy and libogg");
    Options options;
    addOptions(app, options);
    CLI11_PARSE(app, argc, argv);
    __android_log_set_minimum_priority(ANDROID_LOG_SILENT);
    if (app.count(android::ogm::bench::kReadOption) > 0) {
        android::ogm::bench::readOnce(options.readPath);
        return 0;
    }
    if (!options.writePath.empty()) {
        writeFile(android::ogm::bench::mpeg4AndMp3(), options.sizes.file, options.writePath);
        return 0;
    }
    return runBenchmarks(argv[0], options);
}

}  // namespace

int main(int argc, char** argv) {
    try {
        return run(argc, argv);
    } catch (const std::exception& error) {
        fprintf(stderr, "%s\n", error.what());
        return 1;
    }
}
