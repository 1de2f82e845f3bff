// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <unistd.h>

#include <utility>

namespace ogmprobe {

/** A file descriptor that is closed with this object; -1 means none. */
class Descriptor {
  public:
    explicit Descriptor(int number = -1) : mNumber(number) {}
    Descriptor(Descriptor&& other) noexcept : mNumber(std::exchange(other.mNumber, -1)) {}
    Descriptor& operator=(Descriptor&& other) noexcept {
        std::swap(mNumber, other.mNumber);
        return *this;
    }
    ~Descriptor() { close(); }

    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;

    int get() const { return mNumber; }

    void close() {
        if (mNumber >= 0) {
            ::close(std::exchange(mNumber, -1));
        }
    }

  private:
    int mNumber;
};

}  // namespace ogmprobe
