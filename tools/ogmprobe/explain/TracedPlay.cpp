// SPDX-License-Identifier: Apache-2.0
#include "explain/TracedPlay.h"

#include <android/log.h>

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

void playWithLines(const std::string& path, Session& session, const RecordSink& handler) {
    GlobalOptions withLines = session.options;
    withLines.logPriority = ANDROID_LOG_VERBOSE;
    runLimited({path, playJob({}), true}, withLines, session.console, handler);
}

void playTraced(const std::string& path, Session& session, Report& report, PluginTrace& trace,
                const RecordSink& also) {
    TracedRecords records(session, report, trace);
    playWithLines(path, session, [&](const Record& record) {
        std::visit(records, record);
        if (also) {
            also(record);
        }
    });
}

}  // namespace ogmprobe
