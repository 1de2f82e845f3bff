// SPDX-License-Identifier: Apache-2.0

/** What the engine calls to mutate inputs of ogm_extractor_fuzzer. */

#include <algorithm>

#include "SessionMutator.h"

extern "C" size_t LLVMFuzzerMutate(uint8_t* data, size_t size, size_t maxSize);

using namespace android::ogm::fuzz;

extern "C" size_t LLVMFuzzerCustomMutator(uint8_t* data, size_t size, size_t maxSize,
                                          unsigned seed) {
    const Bytes mutated =
            SessionMutator(LLVMFuzzerMutate, seed).mutate(Bytes(data, data + size), maxSize);
    std::copy(mutated.begin(), mutated.end(), data);
    return mutated.size();
}

extern "C" size_t LLVMFuzzerCustomCrossOver(const uint8_t* one, size_t oneSize,
                                            const uint8_t* other, size_t otherSize, uint8_t* output,
                                            size_t maxSize, unsigned seed) {
    const Bytes crossed =
            SessionMutator(LLVMFuzzerMutate, seed)
                    .cross(Bytes(one, one + oneSize), Bytes(other, other + otherSize), maxSize);
    std::copy(crossed.begin(), crossed.end(), output);
    return crossed.size();
}
