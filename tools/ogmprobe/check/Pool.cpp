// SPDX-License-Identifier: Apache-2.0
#include "check/Pool.h"

#include <fmt/core.h>
#include <poll.h>
#include <sched.h>

#include <algorithm>
#include <chrono>
#include <list>
#include <utility>
#include <vector>

#include "process/ChildTask.h"

namespace ogmprobe::check {
namespace {

using PoolClock = std::chrono::steady_clock;

constexpr int kTickMilliseconds = 200;
/** The largest answer: the result of one file. */
constexpr uint64_t kMaxAnswer = uint64_t{16} << 20;

struct Running {
    size_t number;
    double maxSeconds;
    PoolClock::time_point began;
    ChildTask task;

    bool isOverdue() const {
        return maxSeconds > 0 &&
               std::chrono::duration<double>(PoolClock::now() - began).count() > maxSeconds;
    }
};

class Pool {
  public:
    explicit Pool(const PoolRun& run) : mRun(run) {}

    void work() {
        fill();
        while (!mRunning.empty()) {
            readReady();
            endOverdue();
            mRun.tick();
            fill();
        }
    }

  private:
    void fill() {
        while (mRunning.size() < mRun.jobs && !mIsEmpty) {
            auto next = mRun.next();
            if (!next) {
                mIsEmpty = true;
                return;
            }
            mRunning.push_back({mBegun++, next->maxSeconds, PoolClock::now(),
                                ChildTask(next->work, ChildTask::Rights::kAll, kMaxAnswer)});
        }
    }

    void readReady() {
        std::vector<pollfd> events;
        for (const Running& running : mRunning) {
            events.push_back({running.task.descriptor(), POLLIN, 0});
        }
        if (poll(events.data(), events.size(), kTickMilliseconds) <= 0) {
            return;
        }
        auto running = mRunning.begin();
        for (const pollfd& event : events) {
            const auto current = running++;
            if (event.revents != 0 && !current->task.readMore()) {
                PoolAnswer answer{current->number, current->task.takeAnswer()};
                answer.ending = current->task.ending();
                mRunning.erase(current);
                mRun.done(std::move(answer));
            }
        }
    }

    void endOverdue() {
        for (auto running = mRunning.begin(); running != mRunning.end();) {
            const auto current = running++;
            if (current->isOverdue()) {
                PoolAnswer answer{current->number, std::nullopt,
                                  fmt::format("it took more than {:g} s", current->maxSeconds)};
                mRunning.erase(current);
                mRun.done(std::move(answer));
            }
        }
    }

    const PoolRun& mRun;
    std::list<Running> mRunning;
    size_t mBegun = 0;
    bool mIsEmpty = false;
};

}  // namespace

void runPool(const PoolRun& run) {
    Pool(run).work();
}

size_t availableProcessors() {
    cpu_set_t set;
    CPU_ZERO(&set);
    const int count = sched_getaffinity(0, sizeof(set), &set) == 0 ? CPU_COUNT(&set) : 1;
    return static_cast<size_t>(std::max(count, 1));
}

}  // namespace ogmprobe::check
