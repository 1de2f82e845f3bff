// SPDX-License-Identifier: Apache-2.0
#include <media/stagefright/MediaBufferGroup.h>

#include <android/log.h>

#include <algorithm>
#include <limits>

namespace android {

namespace {

constexpr char kTag[] = "MediaBufferGroup";

/** Half as much again, so that slowly growing requests do not need a new buffer each time. */
size_t withReserve(size_t requestedSize) {
    constexpr size_t kGreatest = std::numeric_limits<size_t>::max() / 3 * 2;
    return requestedSize < kGreatest ? requestedSize + requestedSize / 2 : requestedSize;
}

bool isFree(const MediaBufferBase* buffer) {
    return buffer->refcount() == 0;
}

}  // namespace

MediaBufferGroup::MediaBufferGroup(size_t growthLimit) : mGrowthLimit(growthLimit) {}

MediaBufferGroup::MediaBufferGroup(size_t buffers, size_t buffer_size, size_t growthLimit)
    : mGrowthLimit(0) {
    init(buffers, buffer_size, growthLimit);
}

MediaBufferGroup::~MediaBufferGroup() {
    for (MediaBufferBase* buffer : mBuffers) {
        // Buffers here are never in memory shared with other processes, so there is no remote
        // count.
        if (const int uses = buffer->refcount(); uses != 0) {
            __android_log_assert(nullptr, kTag,
                                 "buffer(%p) localRefcount %d != 0, remoteRefcount 0",
                                 static_cast<void*>(buffer), uses);
        }
        discard(buffer);
    }
}

void MediaBufferGroup::init(size_t buffers, size_t buffer_size, size_t growthLimit) {
    if (growthLimit > 0 && growthLimit < buffers) {
        __android_log_print(ANDROID_LOG_WARN, kTag, "growth limit %zu raised to %zu buffers",
                            growthLimit, buffers);
        growthLimit = buffers;
    }
    const std::lock_guard<std::mutex> lock(mLock);
    mGrowthLimit = growthLimit;
    for (size_t i = 0; i < buffers; ++i) {
        MediaBufferBase* buffer = MediaBufferBase::Create(buffer_size);
        if (buffer == nullptr) {
            return;
        }
        add_l(buffer);
    }
}

void MediaBufferGroup::add_buffer(MediaBufferBase* buffer) {
    const std::lock_guard<std::mutex> lock(mLock);
    add_l(buffer);
}

void MediaBufferGroup::add_l(MediaBufferBase* buffer) {
    auto it = mBuffers.begin();
    while (mGrowthLimit > 0 && mBuffers.size() >= mGrowthLimit && it != mBuffers.end()) {
        if (isFree(*it)) {
            discard(*it);
            it = mBuffers.erase(it);
        } else {
            ++it;
        }
    }
    buffer->setObserver(this);
    mBuffers.push_back(buffer);
}

void MediaBufferGroup::discard(MediaBufferBase* buffer) {
    buffer->setObserver(nullptr);
    buffer->release();
}

bool MediaBufferGroup::has_buffers() {
    const std::lock_guard<std::mutex> lock(mLock);
    return mBuffers.size() < mGrowthLimit || std::any_of(mBuffers.begin(), mBuffers.end(), isFree);
}

size_t MediaBufferGroup::buffers() {
    const std::lock_guard<std::mutex> lock(mLock);
    return mBuffers.size();
}

status_t MediaBufferGroup::acquire_buffer(MediaBufferBase** buffer, bool nonBlocking,
                                          size_t requestedSize) {
    std::unique_lock<std::mutex> lock(mLock);
    MediaBufferBase* found = findOrMake(requestedSize);
    while (found == nullptr && !nonBlocking) {
        mReturned.wait(lock);
        found = findOrMake(requestedSize);
    }
    *buffer = found;
    if (found == nullptr) {
        return WOULD_BLOCK;
    }
    found->add_ref();
    found->reset();
    return OK;
}

MediaBufferBase* MediaBufferGroup::findOrMake(size_t requestedSize) {
    for (MediaBufferBase* buffer : mBuffers) {
        if (isFree(buffer) && buffer->size() >= requestedSize) {
            return buffer;
        }
    }
    const auto replaced = smallestFreeBelow(requestedSize);
    if (replaced == mBuffers.end() && mBuffers.size() >= mGrowthLimit) {
        return nullptr;
    }
    MediaBufferBase* made = MediaBufferBase::Create(
            requestedSize == 0 ? largestSize() : withReserve(requestedSize));
    if (made == nullptr) {
        return nullptr;
    }
    made->setObserver(this);
    if (replaced != mBuffers.end()) {
        discard(*replaced);
        *replaced = made;
    } else {
        mBuffers.push_back(made);
    }
    return made;
}

std::vector<MediaBufferBase*>::iterator MediaBufferGroup::smallestFreeBelow(size_t size) {
    auto smallest = mBuffers.end();
    for (auto it = mBuffers.begin(); it != mBuffers.end(); ++it) {
        const size_t limit = smallest == mBuffers.end() ? size : (*smallest)->size();
        if (isFree(*it) && (*it)->size() < limit) {
            smallest = it;
        }
    }
    return smallest;
}

size_t MediaBufferGroup::largestSize() const {
    size_t largest = 0;
    for (const MediaBufferBase* buffer : mBuffers) {
        largest = std::max(largest, buffer->size());
    }
    return largest;
}

void MediaBufferGroup::signalBufferReturned(MediaBufferBase*) {
    // With the lock: a thread that has just found the buffer in use is then already waiting.
    const std::lock_guard<std::mutex> lock(mLock);
    mReturned.notify_one();
}

}  // namespace android
