// SPDX-License-Identifier: Apache-2.0
#include "check/Triage.h"

#include <fmt/core.h>

#include <algorithm>
#include <nlohmann/json.hpp>
#include <optional>
#include <utility>

#include "check/FileCheck.h"
#include "check/Pool.h"
#include "console/ProgressLine.h"
#include "files/InputFiles.h"
#include "process/StandstillWatch.h"
#include "text/Json.h"
#include "text/TimeText.h"

namespace ogmprobe::check {
namespace {

/** A process that plays a file slower than this is considered to have stopped. */
constexpr double kMinBytesPerSecond = 1e6;
constexpr double kTimeoutFactor = 3;
/** The cost of a file in addition to its size, in bytes. */
constexpr uint64_t kCostOfFile = 200'000;

/** The run's progress, measured in bytes, because files differ in size. */
class RunProgress {
  public:
    explicit RunProgress(Console& console) : mLine(console) {}

    void expect(uint64_t sizeBytes) {
        mWhole += sizeBytes + kCostOfFile;
        ++mFiles;
    }
    void count(uint64_t sizeBytes, bool wasKnown) {
        (wasKnown ? mKnown : mDone) += sizeBytes + kCostOfFile;
        ++mFilesDone;
    }
    void show(size_t plays) {
        mLine.update([&](ProgressLine::Seconds time) {
            const auto part = static_cast<double>(mDone + mKnown) / static_cast<double>(mWhole);
            return fmt::format("{}  {} of {} files, {} play, {} left", progressBar(part),
                               mFilesDone, mFiles, plays, leftText(time.count()));
        });
    }

  private:
    std::string leftText(double seconds) const {
        if (mDone == 0) {
            return "an unknown time";
        }
        const auto left = static_cast<double>(mWhole - mKnown - mDone);
        return hoursText(static_cast<uint64_t>(seconds * left / static_cast<double>(mDone)));
    }

    ProgressLine mLine;
    uint64_t mWhole = 0;
    uint64_t mDone = 0;
    uint64_t mKnown = 0;
    size_t mFiles = 0;
    size_t mFilesDone = 0;
};

/** Checks a file in a process without messages and progress. */
std::string answerFor(const std::string& path, const DecoderList& decoders,
                      const GlobalOptions& options) {
    Console console(ColorMode::kNever, true);
    Output nowhere(-1);
    GlobalOptions silent = options;
    silent.logPriority.reset();
    Session session{silent, console, nowhere};
    return toLine(toJson(checkFile(path, decoders, session)));
}

class Run {
  public:
    Run(const TriageRequest& request, Session& session)
        : mRequest(request), mSession(session), mAdvancement(session.console) {}

    void run() {
        for (const std::string& path : mRequest.paths) {
            Entry entry;
            entry.identity = identityOf(path);
            mAdvancement.expect(entry.sizeBytes());
            mEntries.push_back(std::move(entry));
        }
        takeKnown();
        runPool({mRequest.jobs, [this] { return next(); },
                 [this](const PoolAnswer& answer) { take(answer); },
                 [this] { mAdvancement.show(mPlays); }});
        mSession.console.clearProgress();
    }

  private:
    struct Entry {
        std::optional<FileIdentity> identity;
        std::optional<CheckedFile> result;

        uint64_t sizeBytes() const { return identity ? identity->sizeBytes : 0; }
    };

    void takeKnown() {
        for (size_t i = 0; mRequest.state != nullptr && i < mEntries.size(); ++i) {
            const auto& identity = mEntries[i].identity;
            if (const CheckedFile* known = identity ? mRequest.state->find(*identity) : nullptr) {
                finish(i, *known, true);
            }
        }
    }

    std::optional<PoolTask> next() {
        for (; mNext < mEntries.size(); ++mNext) {
            const bool isKnown = mEntries[mNext].result || mIsShown > mNext;
            if (!isKnown && canBeOpened(mNext)) {
                mTasks.push_back(mNext);
                return taskOf(mNext++);
            }
        }
        return std::nullopt;
    }

    /** A pipe can only be read once, so it is read here. */
    bool canBeOpened(size_t index) {
        const std::string& path = mRequest.paths[index];
        try {
            pathToOpen(path);
            return true;
        } catch (const ProbeError& error) {
            finish(index, uncheckedFile(path, kCannotRead, error.code(), error.what()), false);
            return false;
        }
    }

    PoolTask taskOf(size_t index) const {
        const std::string& path = mRequest.paths[index];
        return {[this, &path] { return answerFor(path, mRequest.decoders, mSession.options); },
                maxSeconds(mEntries[index].sizeBytes())};
    }

    /** The extractor's own time limits normally end it long before this. */
    double maxSeconds(uint64_t size) const {
        const double limit = mSession.options.timeoutSeconds;
        return limit <= 0 ? 0
                          : kTimeoutFactor * limit * StandstillWatch::kBusyFactor +
                                    static_cast<double>(size) / kMinBytesPerSecond;
    }

    void take(const PoolAnswer& answer) {
        const size_t index = mTasks[answer.task];
        CheckedFile file = resultOf(mRequest.paths[index], answer);
        requirePlugin(file);
        const auto& identity = mEntries[index].identity;
        if (mRequest.state != nullptr && identity) {
            mRequest.state->add(*identity, file);
        }
        finish(index, std::move(file), false);
    }

    static CheckedFile resultOf(const std::string& path, const PoolAnswer& answer) {
        std::string ending = answer.ending;
        if (answer.text) {
            try {
                CheckedFile file = checkedFileOf(nlohmann::ordered_json::parse(*answer.text));
                file.path = path;
                return file;
            } catch (const std::exception& error) {
                ending = error.what();
            }
        }
        return uncheckedFile(path, "check-ended", ExitCode::kDied,
                             fmt::format("the process that checks the file ended: {}", ending));
    }

    void finish(size_t index, CheckedFile file, bool wasKnown) {
        mPlays += file.verdict() == Verdict::kPlays ? 1 : 0;
        mAdvancement.count(mEntries[index].sizeBytes(), wasKnown);
        mEntries[index].result = std::move(file);
        while (mIsShown < mEntries.size() && mEntries[mIsShown].result) {
            mSession.console.clearProgress();
            mRequest.show(*mEntries[mIsShown].result);
            mEntries[mIsShown++].result.reset();
        }
    }

    const TriageRequest& mRequest;
    Session& mSession;
    RunProgress mAdvancement;
    std::vector<Entry> mEntries;
    /** Indices of entries, by task number. */
    std::vector<size_t> mTasks;
    size_t mNext = 0;
    size_t mIsShown = 0;
    size_t mPlays = 0;
};

}  // namespace

void triage(const TriageRequest& request, Session& session) {
    Run(request, session).run();
}

}  // namespace ogmprobe::check
