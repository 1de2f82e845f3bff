// SPDX-License-Identifier: Apache-2.0
#include <utils/RefBase.h>

#include <android/log.h>

namespace android {

namespace {

constexpr int32_t kNeverHeld = 1 << 28;

// The object's own reference to the count block. It is counted in the same atomic as the weak
// references, so whoever brings the sum to 0 frees the block.
constexpr int32_t kObjectHold = 1 << 30;

bool isHeld(int32_t strongCount) {
    return strongCount > 0 && strongCount != kNeverHeld;
}

}  // namespace

RefBase::weakref_type::weakref_type(RefBase* base)
    : mStrong(kNeverHeld), mWeak(kObjectHold), mBase(base), mFlags(OBJECT_LIFETIME_STRONG) {}

void RefBase::weakref_type::incWeak(const void*) {
    mWeak.fetch_add(1, std::memory_order_relaxed);
}

void RefBase::weakref_type::decWeak(const void* id) {
    const int32_t before = mWeak.fetch_sub(1, std::memory_order_acq_rel);
    const int32_t references = before & ~kObjectHold;
    if (before <= 0 || references == 0) {
        __android_log_assert(nullptr, "RefBase", "decWeak() without a reference on block %p",
                             static_cast<void*>(this));
    }
    if (references != 1) {
        return;
    }
    if (before == 1) {
        delete this;
        return;
    }
    // With an ordinary lifetime the object still belongs to its creator or is being deleted by
    // decStrong(): its destructor frees the block.
    if (livesUntilLastWeak()) {
        mBase->onLastWeakRef(id);
        delete mBase;
    }
}

bool RefBase::weakref_type::attemptIncStrong(const void* id) {
    incWeak(id);
    if (incStrongIfHeld() || reviveStrong(id)) {
        return true;
    }
    decWeak(id);
    return false;
}

bool RefBase::weakref_type::incStrongIfHeld() {
    int32_t count = mStrong.load(std::memory_order_relaxed);
    while (isHeld(count)) {
        if (mStrong.compare_exchange_weak(count, count + 1, std::memory_order_relaxed)) {
            return true;
        }
    }
    return false;
}

// The object has no strong reference now: it never had one, or its lifetime was extended beyond
// the last one. onFirstRef() is not called for a reference that is added here.
bool RefBase::weakref_type::reviveStrong(const void* id) {
    const bool extended = livesUntilLastWeak();
    if (extended && !mBase->onIncStrongAttempted(FIRST_INC_STRONG, id)) {
        return false;
    }
    int32_t count = mStrong.load(std::memory_order_relaxed);
    while (count > 0 || extended) {
        const int32_t next = count == kNeverHeld ? 1 : count + 1;
        if (mStrong.compare_exchange_weak(count, next, std::memory_order_relaxed)) {
            return true;
        }
    }
    return false;
}

int32_t RefBase::weakref_type::getWeakCount() const {
    return mWeak.load(std::memory_order_relaxed) & ~kObjectHold;
}

bool RefBase::weakref_type::livesUntilLastWeak() const {
    return (mFlags.load(std::memory_order_relaxed) & OBJECT_LIFETIME_MASK) == OBJECT_LIFETIME_WEAK;
}

void RefBase::weakref_type::objectDestroyed() {
    // From here on promote() must fail, also for weak references to a never-held object.
    mFlags.store(OBJECT_LIFETIME_STRONG, std::memory_order_relaxed);
    mStrong.store(0, std::memory_order_relaxed);
    if (mWeak.fetch_sub(kObjectHold, std::memory_order_acq_rel) == kObjectHold) {
        delete this;
    }
}

RefBase::RefBase() : mRefs(new weakref_type(this)) {}

RefBase::~RefBase() {
    mRefs->objectDestroyed();
}

void RefBase::incStrong(const void* id) const {
    mRefs->incWeak(id);
    // Adding first and subtracting the initial value afterwards keeps the count positive and
    // different from "never held" for other threads in between.
    if (mRefs->mStrong.fetch_add(1, std::memory_order_relaxed) == kNeverHeld) {
        mRefs->mStrong.fetch_sub(kNeverHeld, std::memory_order_relaxed);
        const_cast<RefBase*>(this)->onFirstRef();
    }
}

void RefBase::incStrongRequireStrong(const void* id) const {
    mRefs->incWeak(id);
    if (!isHeld(mRefs->mStrong.fetch_add(1, std::memory_order_relaxed))) {
        __android_log_assert(nullptr, "RefBase", "object %p is not held by a strong reference",
                             static_cast<const void*>(this));
    }
}

void RefBase::decStrong(const void* id) const {
    weakref_type* const refs = mRefs;
    const int32_t before = refs->mStrong.fetch_sub(1, std::memory_order_acq_rel);
    if (!isHeld(before)) {
        __android_log_assert(nullptr, "RefBase", "decStrong() without a reference on object %p",
                             static_cast<const void*>(this));
    }
    if (before == 1) {
        const_cast<RefBase*>(this)->onLastStrongRef(id);
        if (!refs->livesUntilLastWeak()) {
            delete this;
        }
    }
    // The strong reference includes a weak one, which has kept the count block until here.
    refs->decWeak(id);  // NOLINT(clang-analyzer-cplusplus.NewDelete)
}

int32_t RefBase::getStrongCount() const {
    return mRefs->mStrong.load(std::memory_order_relaxed);
}

RefBase::weakref_type* RefBase::createWeak(const void* id) const {
    mRefs->incWeak(id);
    return mRefs;
}

void RefBase::extendObjectLifetime(int32_t mode) {
    mRefs->mFlags.fetch_or(mode, std::memory_order_relaxed);
}

void RefBase::onFirstRef() {}

void RefBase::onLastStrongRef(const void*) {}

bool RefBase::onIncStrongAttempted(uint32_t flags, const void*) {
    return (flags & FIRST_INC_STRONG) != 0;
}

void RefBase::onLastWeakRef(const void*) {}

}  // namespace android
