// SPDX-License-Identifier: Apache-2.0
#include "compare/LogLineFinder.h"

#include <fmt/core.h>

#include "commands/CommandRecords.h"
#include "text/LogText.h"

namespace ogmprobe {
namespace {

/** Ends the job: the line was logged. */
struct LineFound {};

class LogLineFinder {
  public:
    explicit LogLineFinder(uint64_t number) : mLeft(number) {}

    void operator()(const CallBegun& call) { mCall = call; }
    void operator()(const CallEnded&) { mCall = {}; }
    void operator()(const LogLine& line) {
        if (mLeft-- == 0) {
            mFound.text = logText(line.priority, line.tag, line.text);
            mFound.call = functionName(mCall.function);
            if (mCall.track) {
                mFound.call += fmt::format(" of track {}", *mCall.track);
            }
            throw LineFound();
        }
    }
    template <typename T>
    void operator()(const T&) {}

    const FoundLine& found() const { return mFound; }

  private:
    uint64_t mLeft;
    CallBegun mCall;
    FoundLine mFound;
};

}  // namespace

FoundLine findLogLine(const std::string& path, const GlobalOptions& options, uint64_t number) {
    LogLineFinder finder(number);
    try {
        JobRequest request{path, playJob({}), true};
        request.wholeSearches = true;
        runJob(request, options, visitedBy(finder));
    } catch (const LineFound&) {
    }
    return finder.found();
}

}  // namespace ogmprobe
