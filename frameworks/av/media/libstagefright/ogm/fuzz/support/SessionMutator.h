// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <cstdint>
#include <random>

#include "PagedFile.h"
#include "SessionInput.h"

namespace android::ogm::fuzz {

/** Changes up to `maxSize` bytes in place, of which `size` are used; returns the new size. */
using ByteMutator = size_t (*)(uint8_t* data, size_t size, size_t maxSize);

/**
 * Mutates inputs of the whole plug-in's target by their structure: packets, page fields, stream
 * headers, calls and faults change independently, and the pages stay valid. Bytes within a packet
 * are left to the engine. The seed determines everything.
 */
class SessionMutator {
  public:
    SessionMutator(ByteMutator mutateBytes, uint32_t seed)
        : mMutateBytes(mutateBytes), mRandom(seed) {}

    /** Makes one to four changes; cuts the file if the input becomes longer than `maxSize`. */
    Bytes mutate(const Bytes& input, size_t maxSize);
    /** Combines pages, calls and faults of both inputs. */
    Bytes cross(const Bytes& one, const Bytes& other, size_t maxSize);

  private:
    void changeOnce(SessionInput* input, PagedFile* pieces, size_t maxSize);

    void changeSource(SessionInput* input);
    void changeFault(SessionInput* input);
    void changeCalls(SessionInput* input);
    Call anyCall();

    void changePages(PagedFile* pieces);
    void changeField(PagedFile* pieces);
    void changePackets(PagedFile* pieces);
    void changeStreamHeader(PagedFile* pieces);
    void changeBytes(Bytes* bytes, size_t maxSize);

    FilePiece* anyPage(PagedFile* pieces);
    /** 0 to `count` - 1. */
    size_t below(size_t count) { return count == 0 ? 0 : mRandom() % count; }
    bool oneIn(size_t count) { return below(count) == 0; }

    const ByteMutator mMutateBytes;
    std::minstd_rand mRandom;
};

}  // namespace android::ogm::fuzz
