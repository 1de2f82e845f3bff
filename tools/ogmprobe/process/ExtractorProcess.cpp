// SPDX-License-Identifier: Apache-2.0
#include "process/ExtractorProcess.h"

#include <fmt/core.h>
#include <poll.h>
#include <sys/mman.h>
#include <sys/socket.h>
#include <sys/syscall.h>
#include <sys/wait.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <cstring>
#include <exception>
#include <new>
#include <utility>

#include "plugin/ReadWatch.h"
#include "process/Death.h"
#include "process/Sandbox.h"
#include "records/RecordStream.h"
#include "text/NumberText.h"

namespace ogmprobe {

struct SharedState {
    Vitals vitals;
    DeathNote note;
    RingMemory ring;
};

namespace {

using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;

constexpr auto kFirstWait = 1ms;
constexpr auto kMaxWait = 200ms;

/** The process is stuck; `what()` says where. */
class Stuck : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
};

void require(bool success) {
    if (!success) {
        throw ProbeError(ExitCode::kFile, fmt::format("cannot start a process for the plug-in: {}",
                                                      std::strerror(errno)));
    }
}

// Without a descriptor, so that no process can truncate it while the other uses it.
SharedState* mapSharedState() {
    void* memory = mmap(nullptr, sizeof(SharedState), PROT_READ | PROT_WRITE,
                        MAP_SHARED | MAP_ANONYMOUS, -1, 0);
    require(memory != MAP_FAILED);
    // Not value-initialised: that would touch all its pages, most of which are never needed.
    return new (memory) SharedState;
}

/** The two ends of the socket with which the processes wake each other. */
struct Doorbells {
    Doorbells() {
        std::array<int, 2> ends = {-1, -1};
        require(socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends.data()) == 0);
        parent = Descriptor(ends[0]);
        child = Descriptor(ends[1]);
    }

    Descriptor parent;
    Descriptor child;
};

// The C library's function of 2.36 has no C linkage in its header.
int openProcess(pid_t process) {
    return static_cast<int>(syscall(SYS_pidfd_open, process, 0));
}

void enterSandboxAndReport(const RecordSink& sink) {
    if (auto reason = enterSandbox()) {
        sink(Unconfined{*std::move(reason)});
    }
}

void dieOfCycle(const ReadWatch::Cycle& cycle) {
    death::ofEndlessReading(
            fmt::format(
                    "it repeats {} of the file without end, {} times so far, at offset {}",
                    cycle.reads == 1 ? "one read" : fmt::format("the same {} reads", cycle.reads),
                    cycle.rounds, cycle.offset)
                    .c_str());
}

[[noreturn]] void beExtractor(SharedState& shared, const JobRequest& request,
                              const GlobalOptions& options) {
    death::catchAll(shared.note);
    PluginCall::keepIn(&shared.vitals);
    ReadWatch::onCycle(dieOfCycle, options.timeoutSeconds);
    RingWriter ring(shared.ring, kParentDescriptor);
    RecordWriter writer(ring);
    const RecordSink sink = [&writer](const Record& record) { writer.write(record); };
    try {
        performJob(request, options, sink, [&sink] { enterSandboxAndReport(sink); });
    } catch (const std::exception& error) {
        shared.vitals.function.set(PluginCall::leftByException());
        death::ofException(error.what());
    }
    writer.end();
    _exit(static_cast<int>(ExitCode::kDone));
}

/** Says that the time limit was reached; the call might still have ended. */
std::string overdueSentence(StandstillWatch::State state, StandstillWatch::Duration limit,
                            const Vitals& vitals) {
    const std::string place = inFunction(vitals.function.get());
    if (state == StandstillWatch::State::kStandsStill) {
        return fmt::format(
                "the extractor is stuck{}: no read of the file and no buffer was finished in "
                "{:g} "
                "s; --timeout allows more",
                place, limit.count());
    }
    return fmt::format(
            "the extractor has not finished{}: still searching at {} of {} after {:g} s; "
            "--timeout allows more",
            place, sizeText(static_cast<uint64_t>(vitals.run().lastOffset())),
            sizeText(vitals.fileSize.get()), limit.count() * StandstillWatch::kBusyFactor);
}

std::string_view doing(PluginFunction function) {
    switch (function) {
        case PluginFunction::kSniff:
            return "recognising";
        case PluginFunction::kCreate:
            return "opening";
        default:
            return "reading";
    }
}

}  // namespace

void ExtractorProcess::Unmap::operator()(SharedState* state) const {
    munmap(state, sizeof(SharedState));
}

ExtractorProcess::ExtractorProcess(const JobRequest& request, const GlobalOptions& options)
    : mLimit(options.timeoutSeconds),
      mTraced(request.traced),
      mProgress(request.progress),
      mShared(mapSharedState()) {
    Doorbells doorbells;
    const pid_t parent = getpid();
    mProcess = fork();
    require(mProcess >= 0);
    if (mProcess == 0) {
        detach(parent, doorbells.child.get());
        beExtractor(*mShared, request, options);
    }
    mDoorbell = std::move(doorbells.parent);
    mProcessDescriptor = Descriptor(openProcess(mProcess));
    if (mProcessDescriptor.get() < 0) {
        kill();
        require(false);
    }
    mRing.emplace(mShared->ring, mDoorbell.get(), [this] { return waitForMore(); });
}

ExtractorProcess::~ExtractorProcess() {
    if (mProcess > 0) {
        kill();
    }
}

void ExtractorProcess::deliver(const RecordSink& handler) {
    std::string death;
    try {
        deliverAll(handler);
        return;
    } catch (const RingEnded&) {
        death = deathSentence(mShared->note, function(), reap());
        deliverLastRun(handler);
    } catch (const RingDamaged& damage) {
        death = fmt::format("the extractor died{}: it overwrote memory that is not its own ({})",
                            inFunction(function()), damage.what());
        kill();
    } catch (const Stuck& stuck) {
        death = stuck.what();
        kill();
        deliverLastRun(handler);
    }
    handler(Failure{ExitCode::kDied, death, false});
}

void ExtractorProcess::deliverAll(const RecordSink& handler) {
    constexpr uint64_t kRecordsAtOnce = 64;
    RecordReader records(*mRing);
    uint64_t count = 0;
    while (const auto record = records.next()) {
        handler(*record);
        if (++count % kRecordsAtOnce == 0) {
            reportProgress();
        }
    }
}

/** Passes on the reads that were in progress when the process ended. */
void ExtractorProcess::deliverLastRun(const RecordSink& handler) {
    const SourceRead run = mShared->vitals.run();
    if (mTraced && run.count != 0) {
        handler(run);
    }
}

void ExtractorProcess::reportProgress() const {
    if (mProgress) {
        const Vitals& vitals = mShared->vitals;
        const auto position = static_cast<uint64_t>(vitals.run().lastOffset());
        mProgress({doing(vitals.function.get()), position, vitals.fileSize.get()});
    }
}

// The writer wakes this side only after much data. Short waits find the rest.
bool ExtractorProcess::waitForMore() {
    if (mGone) {
        return false;
    }
    const Vitals& vitals = mShared->vitals;
    StandstillWatch watch(mLimit, vitals.signs());
    auto interval = std::chrono::milliseconds(kFirstWait);
    while (mRing->prepareToSleep()) {
        const auto asleep = Clock::now();
        sleep(interval);
        mRing->wakeUp();
        if (mGone) {
            return false;
        }
        // Not more than the intended time, because both processes may have been stopped meanwhile.
        const auto slept = std::min<Clock::duration>(Clock::now() - asleep, 2 * interval);
        const auto state = watch.observe(slept, vitals.signs());
        if (state != StandstillWatch::State::kAlive) {
            throw Stuck(overdueSentence(state, mLimit, vitals));
        }
        reportProgress();
        interval = std::min<std::chrono::milliseconds>(2 * interval, kMaxWait);
    }
    mRing->wakeUp();
    return true;
}

void ExtractorProcess::sleep(std::chrono::milliseconds atMost) {
    std::array<pollfd, 2> events = {pollfd{mProcessDescriptor.get(), POLLIN, 0},
                                    pollfd{mDoorbell.get(), POLLIN, 0}};
    const int count = poll(events.data(), events.size(), static_cast<int>(atMost.count()));
    if (count <= 0) {
        return;
    }
    mGone = events[0].revents != 0;
}

PluginFunction ExtractorProcess::function() const {
    return mShared->vitals.function.get();
}

int ExtractorProcess::reap() {
    int status = 0;
    while (waitpid(mProcess, &status, 0) < 0 && errno == EINTR) {
    }
    mProcess = -1;
    return status;
}

int ExtractorProcess::kill() {
    ::kill(mProcess, SIGKILL);
    return reap();
}

}  // namespace ogmprobe
