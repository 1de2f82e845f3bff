// SPDX-License-Identifier: Apache-2.0
// Compares what two builds of the plug-in do, or shows what one does.
#include <CLI/CLI.hpp>

#include <algorithm>
#include <cstdio>
#include <exception>
#include <numeric>
#include <string>
#include <thread>
#include <vector>

#include "Runner.h"

namespace {

using namespace android::ogm::trace;

constexpr int kSame = 0;
constexpr int kDifferent = 1;
constexpr int kFailed = 2;

struct Options {
    std::string plugin;
    std::string otherPlugin;
    size_t session = 0;
    size_t shown = 3;
    size_t context = 15;
    std::vector<std::string> leftOut;
    PlanList::Settings plans;
    RunSettings run;
};

Kinds kindsOf(const std::vector<std::string>& names) {
    Kinds kinds = 0;
    for (const std::string& name : names) {
        const auto kind = kindNamed(name);
        if (!kind) {
            throw std::runtime_error("there are no events of the kind " + name);
        }
        kinds |= setOf(*kind);
    }
    return kinds;
}

void print(const char* mark, const std::vector<std::string>& lines, size_t begin, size_t end) {
    for (size_t i = begin; i < std::min(end, lines.size()); ++i) {
        std::printf("  %s %7zu  %s\n", mark, i + 1, lines[i].c_str());
    }
}

/** Plays the session once more with both, and prints the first events that differ. */
void showDifference(const Runner& runner, const Runner& otherRunner, size_t session,
                    size_t context) {
    constexpr size_t kFollowing = 4;
    const auto one = runner.lines(session);
    const auto other = otherRunner.lines(session);
    const auto [difference, ignored] =
            std::mismatch(one.begin(), one.end(), other.begin(), other.end());
    const auto first = static_cast<size_t>(difference - one.begin());
    if (first == one.size() && first == other.size()) {
        std::printf("  played once more, both do the same: a session that depends on chance\n");
        return;
    }
    print(" ", one, first - std::min(first, context), first);
    print("-", one, first, first + kFollowing);
    print("+", other, first, first + kFollowing);
}

uint64_t eventsOf(const std::vector<Digest>& digests) {
    return std::accumulate(digests.begin(), digests.end(), uint64_t{0},
                           [](uint64_t sum, const Digest& digest) { return sum + digest.events; });
}

int compare(const Options& options) {
    const PlanList plans(options.plans);
    const Runner runner(options.plugin, plans, options.run);
    const Runner otherRunner(options.otherPlugin, plans, options.run);
    const auto one = runner.digests();
    const auto other = otherRunner.digests();
    std::vector<size_t> different;
    for (size_t i = 0; i < plans.size(); ++i) {
        if (!(one[i] == other[i])) {
            different.push_back(i);
        }
    }
    std::printf("%zu sessions with %llu events: %zu differ\n", plans.size(),
                static_cast<unsigned long long>(eventsOf(one)), different.size());
    for (const size_t session : different) {
        std::printf("  session %zu: %s\n", session, plans.plan(session).name.c_str());
    }
    for (size_t i = 0; i < std::min(options.shown, different.size()); ++i) {
        std::printf("\nsession %zu: %s\n", different[i], plans.plan(different[i]).name.c_str());
        showDifference(runner, otherRunner, different[i], options.context);
    }
    return different.empty() ? kSame : kDifferent;
}

int show(const Options& options) {
    const PlanList plans(options.plans);
    if (options.session >= plans.size()) {
        throw std::runtime_error("there is no such session");
    }
    std::printf("session %zu: %s\n", options.session, plans.plan(options.session).name.c_str());
    for (const std::string& line :
         Runner(options.plugin, plans, options.run).lines(options.session)) {
        std::printf("%s\n", line.c_str());
    }
    return kSame;
}

int list(const Options& options) {
    const PlanList plans(options.plans);
    const auto digests = Runner(options.plugin, plans, options.run).digests();
    for (size_t i = 0; i < plans.size(); ++i) {
        std::printf("%zu %016llx %llu %s\n", i, static_cast<unsigned long long>(digests[i].digest),
                    static_cast<unsigned long long>(digests[i].events), plans.plan(i).name.c_str());
    }
    return kSame;
}

void addCommonOptions(CLI::App* app, Options* options) {
    constexpr uint64_t kMaxEvents = 120000;
    constexpr size_t kGenerated = 2000;
    options->run.maxEvents = kMaxEvents;
    options->run.jobs = std::max(1U, std::thread::hardware_concurrency());
    options->plans.generated = kGenerated;
    app->add_option("--samples", options->plans.samples, "Folder of sample files");
    app->add_option("--corpus", options->plans.corpora, "Folder of inputs of the fuzz target");
    app->add_option("--sessions", options->plans.generated, "Made-up sessions")
            ->capture_default_str();
    app->add_option("--seed", options->plans.seed, "What they follow from")->capture_default_str();
    app->add_option("--max-events", options->run.maxEvents, "A session ends after this many events")
            ->capture_default_str();
    app->add_option("--jobs", options->run.jobs, "Sessions at the same time")
            ->capture_default_str();
    app->add_option("--leave-out", options->leftOut,
                    "Kinds of events that are not recorded: call, result, log, source, format, "
                    "group, buffer, property, dump");
}

int run(int argc, char** argv) {
    Options options;
    CLI::App app("Shows whether two builds of the plug-in do the same");
    app.require_subcommand(1);
    addCommonOptions(&app, &options);
    app.fallthrough();
    CLI::App* const compareCommand =
            app.add_subcommand("compare", "Plays all sessions with both; shows what differs first");
    compareCommand->add_option("PLUGIN", options.plugin)->required();
    compareCommand->add_option("OTHER", options.otherPlugin)->required();
    compareCommand->add_option("--show", options.shown, "Differing sessions to show")
            ->capture_default_str();
    compareCommand->add_option("--context", options.context, "Events before the difference")
            ->capture_default_str();
    CLI::App* const showCommand = app.add_subcommand("show", "Prints the record of a session");
    showCommand->add_option("PLUGIN", options.plugin)->required();
    showCommand->add_option("SESSION", options.session)->required();
    CLI::App* const listCommand = app.add_subcommand("list", "Prints a digest of each session");
    listCommand->add_option("PLUGIN", options.plugin)->required();
    CLI11_PARSE(app, argc, argv);
    options.run.leftOut = kindsOf(options.leftOut);
    if (*showCommand) {
        return show(options);
    }
    return *listCommand ? list(options) : compare(options);
}

}  // namespace

int main(int argc, char** argv) {
    try {
        return run(argc, argv);
    } catch (const std::exception& problem) {
        std::fprintf(stderr, "%s\n", problem.what());
        return kFailed;
    }
}
