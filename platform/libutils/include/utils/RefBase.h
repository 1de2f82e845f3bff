// SPDX-License-Identifier: Apache-2.0
#pragma once

// RefBase: base class of objects that exist as long as an sp<> holds them.
// wp<T>: a pointer that does not keep its object alive but knows whether it still exists.
//
// Each object owns a separately allocated count block. The strong count is initially 2^28, which
// means "never held": such an object belongs to its creator and may be deleted with plain `delete`.
// The first strong reference sets the count to 1; dropping the last one deletes the object. The
// block is freed after both the object and the last weak reference. A strong reference includes a
// weak one.

#include <stdint.h>
#include <sys/types.h>

#include <atomic>
#include <utility>

#include <utils/StrongPointer.h>

namespace android {

class RefBase {
  public:
    /** Adds a strong reference; the first one ever calls onFirstRef(). `id` is only a label. */
    void incStrong(const void* id) const;

    /** Like incStrong(), but aborts unless the object is already held. */
    void incStrongRequireStrong(const void* id) const;

    /**
     * Drops a strong reference. Dropping the last one calls onLastStrongRef() and deletes the
     * object, unless its lifetime was extended. One call too many aborts.
     */
    void decStrong(const void* id) const;

    /** The number of strong references; 2^28 for an object that was never held. */
    int32_t getStrongCount() const;

    /** The count block, through which weak references reach the object. */
    class weakref_type {
      public:
        weakref_type(const weakref_type&) = delete;
        weakref_type& operator=(const weakref_type&) = delete;

        /** Returns the object; valid only while the caller knows that it exists. */
        RefBase* refBase() const { return mBase; }

        void incWeak(const void* id);

        /** Drops a weak reference; one call too many aborts. */
        void decWeak(const void* id);

        /**
         * Tries to add a strong reference to a weak one. Fails after the last strong reference was
         * dropped; succeeds for an object that was never held.
         */
        bool attemptIncStrong(const void* id);

        /** The number of weak references, including those of the strong references. */
        int32_t getWeakCount() const;

      private:
        friend class RefBase;

        explicit weakref_type(RefBase* base);
        ~weakref_type() = default;

        void objectDestroyed();
        bool livesUntilLastWeak() const;
        bool incStrongIfHeld();
        bool reviveStrong(const void* id);

        std::atomic<int32_t> mStrong;
        std::atomic<int32_t> mWeak;
        RefBase* const mBase;
        std::atomic<int32_t> mFlags;
    };

    /** Adds a weak reference and returns the block to drop it from. */
    weakref_type* createWeak(const void* id) const;

    /** The block, with no reference added. */
    weakref_type* getWeakRefs() const { return mRefs; }

  protected:
    RefBase();
    virtual ~RefBase();

    enum {
        OBJECT_LIFETIME_STRONG = 0,
        OBJECT_LIFETIME_WEAK = 1,
        OBJECT_LIFETIME_MASK = 1,
    };

    /** With OBJECT_LIFETIME_WEAK the object exists until its last weak reference is dropped. */
    void extendObjectLifetime(int32_t mode);

    /** Flag of onIncStrongAttempted(): the object has no strong reference now. */
    enum { FIRST_INC_STRONG = 1 };

    /** Called once, after the first strong reference was counted. */
    virtual void onFirstRef();

    /** Called after the last strong reference was dropped, before the object is deleted. */
    virtual void onLastStrongRef(const void* id);

    /** Only for extended lifetimes: whether a weak reference may become strong. Default: yes. */
    virtual bool onIncStrongAttempted(uint32_t flags, const void* id);

    /** Only for extended lifetimes: the last weak reference was dropped, deletion follows. */
    virtual void onLastWeakRef(const void* id);

  private:
    RefBase(const RefBase&) = delete;
    RefBase& operator=(const RefBase&) = delete;

    weakref_type* const mRefs;
};

template <typename T>
class wp {
  public:
    wp() : m_ptr(nullptr), m_refs(nullptr) {}
    wp(T* other);            // NOLINT(google-explicit-constructor): the platform's is implicit
    wp(const sp<T>& other);  // NOLINT(google-explicit-constructor)
    wp(const wp<T>& other);
    wp(wp<T>&& other) noexcept
        : m_ptr(std::exchange(other.m_ptr, nullptr)),
          m_refs(std::exchange(other.m_refs, nullptr)) {}
    template <typename U>
    wp(const sp<U>& other);  // NOLINT(google-explicit-constructor)

    ~wp() { clear(); }

    wp& operator=(wp<T> other) noexcept;

    /** Returns a strong reference, or null if the object has none left. */
    sp<T> promote() const;

    void clear();

    /** The raw pointer, only for comparisons. */
    T* unsafe_get() const { return m_ptr; }

    // The block is compared too: a new object may have the address of a deleted one.
    bool operator==(const wp<T>& other) const {
        return m_ptr == other.m_ptr && m_refs == other.m_refs;
    }
    bool operator!=(const wp<T>& other) const { return !(*this == other); }

  private:
    T* m_ptr;
    RefBase::weakref_type* m_refs;
};

template <typename T>
wp<T>::wp(T* other) : m_ptr(other), m_refs(other != nullptr ? other->createWeak(this) : nullptr) {}

template <typename T>
wp<T>::wp(const sp<T>& other) : wp(other.get()) {}

template <typename T>
template <typename U>
wp<T>::wp(const sp<U>& other)
    : m_ptr(other.get()), m_refs(m_ptr != nullptr ? m_ptr->createWeak(this) : nullptr) {}

template <typename T>
wp<T>::wp(const wp<T>& other) : m_ptr(other.m_ptr), m_refs(other.m_refs) {
    if (m_refs != nullptr) {
        m_refs->incWeak(this);
    }
}

template <typename T>
wp<T>& wp<T>::operator=(wp<T> other) noexcept {
    std::swap(m_ptr, other.m_ptr);
    std::swap(m_refs, other.m_refs);
    return *this;
}

template <typename T>
sp<T> wp<T>::promote() const {
    sp<T> result;
    if (m_refs != nullptr && m_refs->attemptIncStrong(&result)) {
        result.set_pointer(m_ptr);
    }
    return result;
}

template <typename T>
void wp<T>::clear() {
    m_ptr = nullptr;
    if (RefBase::weakref_type* refs = std::exchange(m_refs, nullptr)) {
        refs->decWeak(this);
    }
}

}  // namespace android
