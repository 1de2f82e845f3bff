// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "check/CheckedFile.h"
#include "check/Decoder.h"
#include "check/TriageState.h"
#include "commands/Session.h"

namespace ogmprobe::check {

/** Many files to be checked in parallel. */
struct TriageRequest {
    const std::vector<std::string>& paths;
    const DecoderList& decoders;
    size_t jobs = 1;
    /** Has the results of an earlier run and stores those of this run; may be null. */
    TriageState* state = nullptr;
    /** Called with each result, in the order of the paths. */
    std::function<void(const CheckedFile&)> show;
};

/**
 * Checks the files, each in a separate process, and shows progress. A process that dies or never
 * ends affects only its own file. Throws `ProbeError` if the plug-in cannot be used.
 */
void triage(const TriageRequest& request, Session& session);

}  // namespace ogmprobe::check
