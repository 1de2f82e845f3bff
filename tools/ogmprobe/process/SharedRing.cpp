// SPDX-License-Identifier: Apache-2.0
#include "process/SharedRing.h"

#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>

#include "ExitCode.h"

namespace ogmprobe {
namespace {

constexpr uint64_t kCapacity = RingMemory::kCapacity;

// Waking the other side costs more than most records, so bytes are collected first.
constexpr uint64_t kBatch = kCapacity / 8;

static_assert(std::atomic<uint64_t>::is_always_lock_free, "needed between processes");
static_assert((kCapacity & (kCapacity - 1)) == 0, "positions are cut to a power of two");

/** A contiguous piece of the ring. */
struct Piece {
    Piece(uint64_t position, uint64_t size)
        : offset(position % kCapacity), length(std::min(size, kCapacity - offset)) {}

    uint64_t offset;
    uint64_t length;
};

}  // namespace

void RingWriter::write(const void* bytes, size_t size) {
    const auto* from = static_cast<const uint8_t*>(bytes);
    while (size > 0) {
        if (mWritten - mTaken == kCapacity) {
            waitForRoom();
        }
        const Piece piece(mWritten, std::min<uint64_t>(size, kCapacity - (mWritten - mTaken)));
        std::memcpy(mMemory.bytes.data() + piece.offset, from, piece.length);
        mWritten += piece.length;
        from += piece.length;
        size -= piece.length;
    }
}

void RingWriter::publish() {
    mMemory.written.store(mWritten, std::memory_order_release);
    if (mWritten - mShown >= kBatch) {
        wakeReader();
    }
}

void RingWriter::flush() {
    mMemory.written.store(mWritten, std::memory_order_release);
    wakeReader();
}

void RingWriter::waitForRoom() {
    mTaken = mMemory.taken.load(std::memory_order_acquire);
    while (mWritten - mTaken == kCapacity) {
        mMemory.writerWaits.store(1);
        flush();
        mTaken = mMemory.taken.load();
        if (mWritten - mTaken == kCapacity) {
            char note = 0;
            const ssize_t got = ::read(mDoorbell, &note, 1);
            if (got == 0 || (got < 0 && errno != EINTR)) {
                _exit(static_cast<int>(ExitCode::kDied));
            }
            mTaken = mMemory.taken.load();
        }
    }
    mMemory.writerWaits.store(0);
}

void RingWriter::wakeReader() {
    mShown = mWritten;
    // The reader announces its sleep before it checks for bytes a last time.
    std::atomic_thread_fence(std::memory_order_seq_cst);
    if (mMemory.readerWaits.exchange(0) != 0) {
        const char note = 0;
        // waitForRoom() notices a reader that is gone.
        [[maybe_unused]] const ssize_t ignored = ::write(mDoorbell, &note, 1);
    }
}

void RingReader::read(void* bytes, size_t size) {
    auto* to = static_cast<uint8_t*>(bytes);
    while (size > 0) {
        const Piece piece(mTaken, std::min<uint64_t>(size, waitForBytes()));
        std::memcpy(to, mMemory.bytes.data() + piece.offset, piece.length);
        mTaken += piece.length;
        to += piece.length;
        size -= piece.length;
        if (mTaken - mReleased >= kBatch) {
            release();
        }
    }
}

void RingReader::release() {
    mReleased = mTaken;
    mMemory.taken.store(mTaken);
    if (mMemory.writerWaits.exchange(0) != 0) {
        const char note = 0;
        // If this fails, the writer is gone, or has so many notifications that it cannot be asleep.
        [[maybe_unused]] const ssize_t ignored =
                send(mDoorbell, &note, 1, MSG_DONTWAIT | MSG_NOSIGNAL);
    }
}

uint64_t RingReader::available() const {
    const uint64_t bytes = mMemory.written.load(std::memory_order_acquire) - mTaken;
    if (bytes > kCapacity) {
        throw RingDamaged("more bytes than the ring holds");
    }
    return bytes;
}

uint64_t RingReader::waitForBytes() {
    uint64_t bytes = available();
    while (bytes == 0) {
        release();
        if (!mWait()) {
            // Bytes written just before the end.
            bytes = available();
            if (bytes == 0) {
                throw RingEnded{};
            }
            return bytes;
        }
        bytes = available();
    }
    return bytes;
}

bool RingReader::prepareToSleep() {
    mMemory.readerWaits.store(1);
    std::atomic_thread_fence(std::memory_order_seq_cst);
    return available() == 0;
}

void RingReader::wakeUp() {
    mMemory.readerWaits.store(0);
    std::array<char, 64> notes;
    // Remaining notifications wake it once more.
    [[maybe_unused]] const ssize_t ignored =
            recv(mDoorbell, notes.data(), notes.size(), MSG_DONTWAIT);
}

}  // namespace ogmprobe
