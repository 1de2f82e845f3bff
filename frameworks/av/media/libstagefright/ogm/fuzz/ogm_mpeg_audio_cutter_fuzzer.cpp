// SPDX-License-Identifier: Apache-2.0

/** The cutter of MPEG audio frames: see support/CutterComparison.h for the input. */

#include "CutterComparison.h"
#include "Ends.h"

using namespace android::ogm;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    (void)fuzz::endsByItself([&] {
        fuzz::cutAndCompare(test::ReferenceCutter::Codec::kMpegAudio,
                            fuzz::InputReader(data, size));
    });
    return 0;
}
