// SPDX-License-Identifier: Apache-2.0

/** The whole plug-in through its entry point: see support/SessionInput.h for the input. */

#include "ElementaryFile.h"
#include "Ends.h"
#include "PlatformLog.h"
#include "Session.h"

using namespace android::ogm::fuzz;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const SessionInput input(data, size);
    const Bytes file = input.elementary ? elementaryFile(input.file) : input.file;
    setLogComposed(input.composedLog);
    (void)endsByItself([&] { Session(input, file).run(); });
    return 0;
}
