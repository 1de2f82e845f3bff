// SPDX-License-Identifier: Apache-2.0
#include <media/stagefright/MediaBufferGroup.h>

#include <android/log.h>

#include <algorithm>
#include <limits>

namespace android {

namespace {

constexpr char kTag[] = "MediaBufferGroup";

/** Half as much again, so that slowly growing requests do not make a new buffer each time. */
size_t withReserve(size_t requestedSize) {
    constexpr size_t kGreatest = std::numeric_limits<size_t>::max() / 3 * 2;
    return requestedSize < kGreatest ? requestedSize + requestedSize / 2 : requestedSize;
}

bool isFree(const MediaBufferBase* buffer) {
    return buffer->refcount() == 0;
}

}  // namespace

/** What one walk over the list finds. */
struct MediaBufferGroup::Survey {
    static constexpr size_t kNone = std::numeric_limits<size_t>::max();

    /** The first free buffer that is large enough. */
    MediaBufferBase* fit = nullptr;
    /** The place of the smallest free buffer that is too small. */
    size_t smallest = kNone;
    /** The largest size of any buffer, at least the request. */
    size_t largestSize;
};

MediaBufferGroup::MediaBufferGroup(size_t growthLimit) : mGrowthLimit(growthLimit) {}

MediaBufferGroup::MediaBufferGroup(size_t buffers, size_t buffer_size, size_t growthLimit)
    : mGrowthLimit(0) {
    init(buffers, buffer_size, growthLimit);
}

MediaBufferGroup::~MediaBufferGroup() {
    for (MediaBufferBase* buffer : mBuffers) {
        // No buffer of this library lies in memory shared with other processes, which would hold
        // it by the remote count.
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
    Mutex::Autolock lock(mLock);
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
    Mutex::Autolock lock(mLock);
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
    Mutex::Autolock lock(mLock);
    return mBuffers.size() < mGrowthLimit || std::any_of(mBuffers.begin(), mBuffers.end(), isFree);
}

size_t MediaBufferGroup::buffers() {
    Mutex::Autolock lock(mLock);
    return mBuffers.size();
}

status_t MediaBufferGroup::acquire_buffer(MediaBufferBase** buffer, bool nonBlocking,
                                          size_t requestedSize) {
    Mutex::Autolock lock(mLock);
    while (true) {
        if (MediaBufferBase* found = findOrMake(requestedSize)) {
            found->add_ref();
            found->reset();
            *buffer = found;
            return OK;
        }
        if (nonBlocking) {
            *buffer = nullptr;
            return WOULD_BLOCK;
        }
        mCondition.wait(mLock);
    }
}

MediaBufferGroup::Survey MediaBufferGroup::survey(size_t requestedSize) const {
    Survey result;
    result.largestSize = requestedSize;
    for (size_t i = 0; i < mBuffers.size(); ++i) {
        MediaBufferBase* const buffer = mBuffers[i];
        result.largestSize = std::max(result.largestSize, buffer->size());
        if (!isFree(buffer)) {
            continue;
        }
        if (buffer->size() >= requestedSize) {
            result.fit = buffer;
            return result;
        }
        if (result.smallest == Survey::kNone ||
            buffer->size() < mBuffers[result.smallest]->size()) {
            result.smallest = i;
        }
    }
    return result;
}

MediaBufferBase* MediaBufferGroup::findOrMake(size_t requestedSize) {
    const Survey found = survey(requestedSize);
    const bool mayReplace = found.smallest != Survey::kNone;
    if (found.fit != nullptr || (!mayReplace && mBuffers.size() >= mGrowthLimit)) {
        return found.fit;
    }
    MediaBufferBase* made = MediaBufferBase::Create(
            requestedSize == 0 ? found.largestSize : withReserve(requestedSize));
    if (made == nullptr) {
        return nullptr;
    }
    made->setObserver(this);
    if (mayReplace) {
        discard(mBuffers[found.smallest]);
        mBuffers[found.smallest] = made;
    } else {
        mBuffers.push_back(made);
    }
    return made;
}

void MediaBufferGroup::signalBufferReturned(MediaBufferBase*) {
    // Under the lock: an acquirer that has just found the buffer in use is then waiting already.
    Mutex::Autolock lock(mLock);
    mCondition.signal();
}

}  // namespace android
