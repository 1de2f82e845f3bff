// SPDX-License-Identifier: Apache-2.0
#include "explain/TracedPlay.h"

#include <android/log.h>
#include <fmt/core.h>

#include <variant>

#include "commands/CommandRecords.h"

namespace ogmprobe {
namespace {

class TracedRecords : public CommandRecords {
  public:
    TracedRecords(Session& session, Report& report, PluginTrace& trace)
        : CommandRecords(session, report), mTrace(trace) {}

    template <typename T>
    void operator()(const T& record) {
        if constexpr (requires { mTrace.add(record); }) {
            mTrace.add(record);
        }
        CommandRecords::operator()(record);
    }

  private:
    PluginTrace& mTrace;
};

}  // namespace

void playTraced(const std::string& path, Session& session, Report& report, PluginTrace& trace,
                const RecordSink& also) {
    GlobalOptions withLines = session.options;
    withLines.logPriority = ANDROID_LOG_VERBOSE;
    TracedRecords records(session, report, trace);
    try {
        runShown({path, playJob({}), true}, withLines, session.console, [&](const Record& record) {
            std::visit(records, record);
            if (also) {
                also(record);
            }
        });
    } catch (const GoesInCircles& circles) {
        const Failure failure{ExitCode::kDied,
                              fmt::format("the extractor never ends: {}", circles.what())};
        trace.add(failure);
        report.error(failure.code, failure.message);
    }
}

}  // namespace ogmprobe
