// SPDX-License-Identifier: Apache-2.0
#include "plugin/PluginCall.h"

#include <exception>

#include "plugin/ReadWatch.h"
#include "records/Trace.h"

namespace ogmprobe {
namespace {

PluginFunction gLeftByException = PluginFunction::kNone;

void countSignOfLife(Vitals& vitals) noexcept {
    vitals.signsOfLife.set(vitals.signsOfLife.get() + 1);
}

}  // namespace

PluginCall::PluginCall(PluginFunction function, std::optional<size_t> track)
    : mEnd{function, track, {}}, mExceptionsBefore(std::uncaught_exceptions()) {
    countSignOfLife(*sVitals);
    sVitals->function.set(function);
    ReadWatch::endRun();
    ReadWatch::beginCall();
    Trace::add<CallBegun>(function, track);
}

PluginCall::~PluginCall() {
    if (std::uncaught_exceptions() > mExceptionsBefore) {
        gLeftByException = mEnd.function;
    }
    ReadWatch::endRun();
    Trace::add<CallEnded>(mEnd);
    sVitals->function.set(PluginFunction::kNone);
    countSignOfLife(*sVitals);
}

media_status_t PluginCall::returned(media_status_t status) {
    mEnd.status = status;
    return status;
}

bool PluginCall::active() noexcept {
    return sVitals->function.get() != PluginFunction::kNone;
}

PluginFunction PluginCall::leftByException() noexcept {
    return gLeftByException;
}

void PluginCall::keepIn(Vitals* vitals) noexcept {
    sVitals = vitals != nullptr ? vitals : &sOwnVitals;
}

}  // namespace ogmprobe
