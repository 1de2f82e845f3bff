// SPDX-License-Identifier: Apache-2.0
#include "Runner.h"

#include <dlfcn.h>
#include <fcntl.h>
#include <malloc.h>
#include <sys/mman.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <new>
#include <stdexcept>
#include <utility>

#include "Platform.h"
#include "Player.h"
#include "Watchdog.h"

namespace android::ogm::trace {

namespace {

constexpr char kDumpProperty[] = "vendor.zor.ogmextractor.dump.audio";

/** Memory that is shared with child processes. */
template <typename Value>
class SharedArray {
  public:
    explicit SharedArray(size_t count) : mSize(count * sizeof(Value)) {
        void* const memory =
                mmap(nullptr, mSize, PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0);
        if (memory == MAP_FAILED) {
            throw std::bad_alloc();
        }
        mValues = static_cast<Value*>(memory);
    }
    ~SharedArray() { (void)munmap(mValues, mSize); }
    SharedArray(const SharedArray&) = delete;
    SharedArray& operator=(const SharedArray&) = delete;

    Value& operator[](size_t index) { return mValues[index]; }

  private:
    const size_t mSize;
    Value* mValues;
};

/** Calls `body` in a new process, which ends with it. */
pid_t inNewProcess(const std::function<void()>& body) {
    (void)fflush(nullptr);
    const pid_t child = fork();
    if (child < 0) {
        throw std::runtime_error("cannot make a process");
    }
    if (child != 0) {
        return child;
    }
    try {
        body();
    } catch (const std::exception& problem) {
        (void)fprintf(stderr, "%s\n", problem.what());
        _exit(EXIT_FAILURE);
    }
    _exit(kReturned);
}

int waitFor(pid_t child) {
    int status = 0;
    (void)waitpid(child, &status, 0);
    return status;
}

GetExtractorDef load(const std::string& plugin) {
    // Freed memory, and memory that was never written, has the same content each time.
    constexpr int kFill = 0x5A;
    (void)mallopt(M_PERTURB, kFill);
    void* const library = dlopen(plugin.c_str(), RTLD_NOW | RTLD_LOCAL);
    void* const symbol = library == nullptr ? nullptr : dlsym(library, "GETEXTRACTORDEF");
    if (symbol == nullptr) {
        throw std::runtime_error("cannot load " + plugin + ": " + dlerror());
    }
    return reinterpret_cast<GetExtractorDef>(symbol);
}

void playHere(GetExtractorDef entry, const Plan& plan) {
    const rlimit noCore{0, 0};
    (void)setrlimit(RLIMIT_CORE, &noCore);
    // The C library reports damaged memory there.
    (void)dup2(open("/dev/null", O_WRONLY | O_CLOEXEC), STDERR_FILENO);
    watchThisProcess();
    if (plan.dumpAudio) {
        setProperties({{kDumpProperty, "1"}});
    }
    setDataFolderOpen(plan.dumpCanBeOpened);
    Player(entry, plan).play();
    record(Kind::kEnd, "returned");
}

void recordHowItEnded(int status) {
    if (WIFSIGNALED(status)) {
        record(Kind::kEnd, "signal %d ends the process", WTERMSIG(status));
        return;
    }
    switch (WEXITSTATUS(status)) {
        case kRanOn:
            record(Kind::kEnd, "goes on without end, or for longer than is looked at");
            break;
        case kStoodStill:
            record(Kind::kEnd, "does nothing more that could be seen, and does not end");
            break;
        default:
            break;
    }
}

Digest playSession(GetExtractorDef entry, const Plan& plan, Tape* tape,
                   const Tape::Settings& settings) {
    beginRecord(tape, settings);
    recordHowItEnded(waitFor(inNewProcess([&] { playHere(entry, plan); })));
    flushRecord();
    return {tape->digest, tape->events};
}

std::string readAll(int descriptor) {
    const off_t size = lseek(descriptor, 0, SEEK_END);
    std::string text(static_cast<size_t>(std::max<off_t>(size, 0)), '\0');
    if (pread(descriptor, text.data(), text.size(), 0) != static_cast<ssize_t>(text.size())) {
        throw std::runtime_error("cannot read a record");
    }
    return text;
}

std::vector<std::string> inLines(const std::string& text) {
    std::vector<std::string> lines;
    for (size_t begin = 0; begin < text.size();) {
        const size_t end = std::min(text.find('\n', begin), text.size());
        lines.push_back(text.substr(begin, end - begin));
        begin = end + 1;
    }
    return lines;
}

}  // namespace

Runner::Runner(std::string plugin, const PlanList& plans, const RunSettings& settings)
    : mPlugin(std::move(plugin)), mPlans(plans), mSettings(settings) {
    if (waitFor(inNewProcess([this] { (void)load(mPlugin); })) != 0) {
        throw std::runtime_error("no session can be played");
    }
}

std::vector<Digest> Runner::digests() const {
    SharedArray<Digest> results(mPlans.size() + 1);
    SharedArray<std::atomic<size_t>> next(1);
    const auto playMany = [&] {
        const GetExtractorDef entry = load(mPlugin);
        Tape* const tape = newTape();
        for (size_t i = next[0]++; i < mPlans.size(); i = next[0]++) {
            results[i] = playSession(entry, mPlans.plan(i), tape,
                                     {mSettings.leftOut, mSettings.maxEvents, -1});
        }
    };
    std::vector<pid_t> workers(std::max<size_t>(mSettings.jobs, 1));
    std::generate(workers.begin(), workers.end(), [&] { return inNewProcess(playMany); });
    bool failed = false;
    for (const pid_t worker : workers) {
        failed |= waitFor(worker) != 0;
    }
    if (failed) {
        throw std::runtime_error("not all sessions could be played");
    }
    return std::vector<Digest>(&results[0], &results[mPlans.size()]);
}

std::vector<std::string> Runner::lines(size_t session) const {
    const int descriptor = memfd_create("record", MFD_CLOEXEC);
    if (descriptor < 0) {
        throw std::runtime_error("no memory for a record");
    }
    const int status = waitFor(inNewProcess([&] {
        (void)playSession(load(mPlugin), mPlans.plan(session), newTape(),
                          {mSettings.leftOut, mSettings.maxEvents, descriptor});
    }));
    const std::string text = readAll(descriptor);
    (void)close(descriptor);
    if (status != 0) {
        throw std::runtime_error("a session could not be played");
    }
    return inLines(text);
}

}  // namespace android::ogm::trace
