// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <pthread.h>

#include <utils/Errors.h>

namespace android {

class Condition;

/** A plain POSIX mutex: locking it twice in one thread blocks for ever. */
class Mutex {
  public:
    Mutex() = default;
    ~Mutex() { pthread_mutex_destroy(&mMutex); }

    Mutex(const Mutex&) = delete;
    Mutex& operator=(const Mutex&) = delete;

    /** Gives 0 or a negative errno value. */
    status_t lock() { return -pthread_mutex_lock(&mMutex); }

    void unlock() { pthread_mutex_unlock(&mMutex); }

    /** Gives 0 when the mutex was taken, -EBUSY when somebody holds it. */
    status_t tryLock() { return -pthread_mutex_trylock(&mMutex); }

    /** Holds the mutex for the rest of the block. */
    class Autolock {
      public:
        explicit Autolock(Mutex& mutex) : mLock(mutex) { mLock.lock(); }
        explicit Autolock(Mutex* mutex) : mLock(*mutex) { mLock.lock(); }
        ~Autolock() { mLock.unlock(); }

        Autolock(const Autolock&) = delete;
        Autolock& operator=(const Autolock&) = delete;

      private:
        Mutex& mLock;
    };

  private:
    friend class Condition;

    pthread_mutex_t mMutex = PTHREAD_MUTEX_INITIALIZER;
};

typedef Mutex::Autolock AutoMutex;

}  // namespace android
