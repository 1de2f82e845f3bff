// SPDX-License-Identifier: Apache-2.0
#include "process/JobRunner.h"

#include <android/log.h>

#include <exception>
#include <functional>
#include <optional>

#include "files/InputFiles.h"
#include "plugin/FileSource.h"
#include "plugin/PluginCall.h"
#include "plugin/PluginLibrary.h"
#include "plugin/ReadWatch.h"
#include "process/ExtractorProcess.h"
#include "process/PluginPath.h"
#include "records/Trace.h"

namespace ogmprobe {
namespace {

/**
 * Passes records on within this process. Some are made while the plug-in runs, and exceptions must
 * not pass through it, so an exception of the sink is kept until the call has returned.
 */
class DirectSink {
  public:
    explicit DirectSink(const RecordSink& handler) : mHandler(handler) {}

    /** After an exception no more records are passed on. */
    void operator()(const Record& record) {
        if (mFailure == nullptr) {
            try {
                mHandler(record);
            } catch (...) {
                mFailure = std::current_exception();
            }
        }
        if (mFailure != nullptr && !mThrown && !PluginCall::active()) {
            mThrown = true;
            std::rethrow_exception(mFailure);
        }
    }

    void rethrowFailure() const {
        if (mFailure != nullptr) {
            std::rethrow_exception(mFailure);
        }
    }

  private:
    const RecordSink& mHandler;
    std::exception_ptr mFailure;
    bool mThrown = false;
};

// The logger of a process cannot hold a pointer.
const RecordSink* gLogSink = nullptr;

void logIntoSink(const __android_log_message* message) {
    if (gLogSink != nullptr) {
        ReadWatch::endRun();
        (*gLogSink)(LogLine{message->priority, message->tag, message->message});
    }
}

/** Passes log lines, and a trace if requested, to the sink during its lifetime. */
class Recording {
  public:
    Recording(const JobRequest& request, const GlobalOptions& options, const RecordSink& sink) {
        gLogSink = &sink;
        __android_log_set_logger(logIntoSink);
        __android_log_set_minimum_priority(options.logPriority.value_or(ANDROID_LOG_SILENT));
        Trace::into(request.traced ? &sink : nullptr);
    }
    ~Recording() {
        Trace::into(nullptr);
        gLogSink = nullptr;
    }

    Recording(const Recording&) = delete;
    Recording& operator=(const Recording&) = delete;
};

void runInProcess(const JobRequest& request, const GlobalOptions& options,
                  const RecordSink& handler) {
    DirectSink direct(handler);
    performJob(request, options, std::ref(direct), [] {});
    direct.rethrowFailure();
}

}  // namespace

void runJob(const JobRequest& request, const GlobalOptions& options, const RecordSink& handler) {
    JobRequest toOpen = request;
    toOpen.path = pathToOpen(request.path);
    if (options.inProcess) {
        runInProcess(toOpen, options, handler);
        return;
    }
    ExtractorProcess process(toOpen, options);
    process.deliver(handler);
}

void performJob(const JobRequest& request, const GlobalOptions& options, const RecordSink& sink,
                const std::function<void()>& beforeReading) {
    const Recording recording(request, options, sink);
    std::optional<PluginLibrary> library;
    try {
        library.emplace(pluginPath(options));
    } catch (const ProbeError& error) {
        sink(Failure{error.code(), error.what(), true});
        return;
    }
    try {
        FileSource source(request.path);
        PluginCall::vitals().fileSize.set(source.size());
        // What another plug-in's searches depend on is unknown.
        if (options.pluginPath.empty() && !request.wholeSearches) {
            source.shortenRepeatedSearches();
        }
        beforeReading();
        request.job({*library, source, sink});
    } catch (const ProbeError& error) {
        sink(Failure{error.code(), error.what(), false});
    }
}

}  // namespace ogmprobe
