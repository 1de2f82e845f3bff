// SPDX-License-Identifier: Apache-2.0
#include "plugin/PluginCall.h"

#include <exception>

#include "records/Trace.h"

namespace ogmprobe {
namespace {

Vitals gOwnVitals;
Vitals* gVitals = &gOwnVitals;
PluginFunction gLeftByException = PluginFunction::kNone;

// There is one writer: no need for an atomic addition.
void countSignOfLife() noexcept {
    auto& signs = gVitals->signsOfLife;
    signs.store(signs.load(std::memory_order_relaxed) + 1, std::memory_order_relaxed);
}

}  // namespace

PluginCall::PluginCall(PluginFunction function, std::optional<size_t> track)
    : mEnd{function, track, {}}, mExceptionsBefore(std::uncaught_exceptions()) {
    countSignOfLife();
    gVitals->function.store(function, std::memory_order_relaxed);
    Trace::add<CallBegun>(function, track);
}

PluginCall::~PluginCall() {
    if (std::uncaught_exceptions() > mExceptionsBefore) {
        gLeftByException = mEnd.function;
    }
    Trace::add<CallEnded>(mEnd);
    gVitals->function.store(PluginFunction::kNone, std::memory_order_relaxed);
    countSignOfLife();
}

media_status_t PluginCall::returned(media_status_t status) {
    mEnd.status = status;
    return status;
}

bool PluginCall::active() noexcept {
    return gVitals->function.load(std::memory_order_relaxed) != PluginFunction::kNone;
}

PluginFunction PluginCall::leftByException() noexcept {
    return gLeftByException;
}

void PluginCall::noteProgress() noexcept {
    countSignOfLife();
}

void PluginCall::keepIn(Vitals* vitals) noexcept {
    gVitals = vitals != nullptr ? vitals : &gOwnVitals;
}

}  // namespace ogmprobe
