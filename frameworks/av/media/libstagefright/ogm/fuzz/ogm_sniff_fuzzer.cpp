// SPDX-License-Identifier: Apache-2.0

/** The sniff over a buffer of any size, which is the whole input. */

#include <algorithm>
#include <string_view>

#include "Ends.h"
#include "InputReader.h"
#include "page/Sniff.h"

using namespace android::ogm::fuzz;

namespace {

bool holds(const ExactBlock& block, std::string_view text) {
    const uint8_t* const end = block.view().data() + block.size();
    return std::search(block.view().data(), end, text.begin(), text.end()) != end;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    ExactBlock block(data, size);
    uint8_t isVorbisExist = 0;
    const bool accepted =
            android::sniffOgm(block.data(), static_cast<uint32_t>(size), &isVorbisExist);
    require(!accepted || holds(block, "video") || holds(block, "audio") || holds(block, "theora"),
            "a file without a stream is accepted");
    require(isVorbisExist == (isVorbisExist != 0 && holds(block, "vorbis") ? 1 : 0),
            "Vorbis is seen where there is none");
    return 0;
}
