// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <array>
#include <atomic>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <stdexcept>
#include <utility>

namespace ogmprobe {

/**
 * A stream of bytes from one process to another, in shared memory. Initially zeros.
 *
 * Positions count all bytes ever written or read. The reader trusts nothing here: the writer may be
 * under the control of a damaged file.
 */
struct RingMemory {
    static constexpr uint64_t kCapacity = uint64_t{1} << 20;

    alignas(64) std::atomic<uint64_t> written;
    std::atomic<uint32_t> writerWaits;
    alignas(64) std::atomic<uint64_t> taken;
    std::atomic<uint32_t> readerWaits;
    alignas(64) std::array<uint8_t, kCapacity> bytes;
};

/** The writing end. The descriptor is one end of a pair of stream sockets. */
class RingWriter {
  public:
    RingWriter(RingMemory& memory, int doorbell) : mMemory(memory), mDoorbell(doorbell) {}

    /** Waits for space if needed; ends the process if the reader is gone. */
    void write(const void* bytes, size_t size);
    /** Makes the written bytes visible to the reader, which is woken only after many bytes. */
    void publish();
    /** Makes the written bytes visible and wakes the reader at once. */
    void flush();

  private:
    void waitForRoom();
    void wakeReader();

    RingMemory& mMemory;
    const int mDoorbell;
    uint64_t mWritten = 0;
    uint64_t mTaken = 0;
    uint64_t mShown = 0;
};

/** The writer will not write any more. */
struct RingEnded {};

/** No correct writer can have written the ring's contents. */
class RingDamaged : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
};

/** The reading end. The descriptor is the other end of the pair. */
class RingReader {
  public:
    /** Waits until there may be more to read. Returns false if there never will be. */
    using Wait = std::function<bool()>;

    RingReader(RingMemory& memory, int doorbell, Wait wait)
        : mMemory(memory), mDoorbell(doorbell), mWait(std::move(wait)) {}

    /** Throws `RingEnded`, `RingDamaged`, and whatever `Wait` throws. */
    void read(void* bytes, size_t size);
    /** Makes the space of the read bytes available to the writer. */
    void release();

    /** Must be called before going to sleep. Returns true if there is nothing to read. */
    bool prepareToSleep();
    void wakeUp();

  private:
    uint64_t available() const;
    uint64_t waitForBytes();

    RingMemory& mMemory;
    const int mDoorbell;
    const Wait mWait;
    uint64_t mTaken = 0;
    uint64_t mReleased = 0;
};

}  // namespace ogmprobe
