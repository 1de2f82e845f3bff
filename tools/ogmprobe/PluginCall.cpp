// SPDX-License-Identifier: Apache-2.0
#include "PluginCall.h"

#include <atomic>

namespace ogmprobe {
namespace {

std::atomic<const char*> gCurrent{nullptr};
std::atomic<uint64_t> gCalls{0};
std::atomic<uint64_t> gReads{0};

static_assert(std::atomic<const char*>::is_always_lock_free, "needed in signal handlers");

}  // namespace

PluginCall::PluginCall(const char* function) {
    ++gCalls;
    gCurrent = function;
}

PluginCall::~PluginCall() {
    gCurrent = nullptr;
    ++gCalls;
}

const char* PluginCall::current() noexcept {
    return gCurrent;
}

void PluginCall::noteProgress() noexcept {
    ++gReads;
}

uint64_t PluginCall::calls() noexcept {
    return gCalls;
}

uint64_t PluginCall::signsOfLife() noexcept {
    return gCalls + gReads;
}

}  // namespace ogmprobe
