// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <poll.h>
#include <sys/socket.h>

#include <array>
#include <atomic>
#include <memory>

#include "files/Descriptor.h"
#include "process/SharedRing.h"

namespace ogmprobe::test {

/** A ring with both its ends, in one process. */
class RingFixture {
  public:
    RingFixture() {
        std::array<int, 2> ends = {-1, -1};
        socketpair(AF_UNIX, SOCK_STREAM, 0, ends.data());
        mReaderBell = Descriptor(ends[0]);
        mWriterBell = Descriptor(ends[1]);
        mReader = std::make_unique<RingReader>(*mMemory, ends[0], [this] { return wait(); });
        mWriter = std::make_unique<RingWriter>(*mMemory, ends[1]);
    }

    RingMemory& memory() { return *mMemory; }
    RingReader& reader() { return *mReader; }
    RingWriter& writer() { return *mWriter; }

    /** The writer is gone. To be called on its thread. */
    void hangUp() { mWriterBell.close(); }
    /** The same, after it has published all that it wrote. */
    void endWriting() {
        mWriter->flush();
        hangUp();
    }

  private:
    // The hang-up of the other end simulates the end of its process.
    bool wait() {
        pollfd event = {mReaderBell.get(), POLLIN, 0};
        while (mReader->prepareToSleep()) {
            poll(&event, 1, -1);
            mReader->wakeUp();
            if ((event.revents & POLLHUP) != 0) {
                return false;
            }
        }
        mReader->wakeUp();
        return true;
    }

    std::unique_ptr<RingMemory> mMemory = std::make_unique<RingMemory>();
    Descriptor mReaderBell;
    Descriptor mWriterBell;
    std::unique_ptr<RingReader> mReader;
    std::unique_ptr<RingWriter> mWriter;
};

}  // namespace ogmprobe::test
