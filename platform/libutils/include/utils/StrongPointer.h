// SPDX-License-Identifier: Apache-2.0
#pragma once

// sp<T>: a pointer that holds one strong reference to a RefBase object.
//
//     sp<ABuffer> buffer = new ABuffer(size);   // count 1
//     sp<ABuffer> second = buffer;              // count 2
//     buffer.clear();                           // count 1; `second` still holds the object
//
// An object that somebody deletes with plain `delete` must never be put into an sp<>, not even for
// a moment: when the sp<> is destroyed, the count falls from 1 to 0, which deletes the object.
//
// The counts are atomic, but an sp<> variable that two threads use needs a lock.

#include <stdint.h>

#include <cstddef>
#include <functional>
#include <type_traits>
#include <utility>

namespace android {

template <typename T>
class wp;

/** Ends the process: `object` was passed to an sp<> although it is on the stack. */
[[noreturn]] void sp_report_stack_pointer(const void* object);

template <typename T>
class sp {
  public:
    sp() : m_ptr(nullptr) {}

    /** Takes a new reference to `other`, which may be null. Aborts for an object on the stack. */
    sp(T* other);  // NOLINT(google-explicit-constructor): the platform's sp<> is implicit
    sp(const sp<T>& other);
    sp(sp<T>&& other) noexcept : m_ptr(std::exchange(other.m_ptr, nullptr)) {}
    template <typename U>
    sp(U* other);  // NOLINT(google-explicit-constructor)
    template <typename U>
    sp(const sp<U>& other);  // NOLINT(google-explicit-constructor)
    template <typename U>
    sp(sp<U>&& other);  // NOLINT(google-explicit-constructor)

    ~sp() { clear(); }

    /** Constructs a T and returns the first reference to it. */
    template <typename... Args>
    static sp<T> make(Args&&... args);

    /**
     * Takes a reference to an object that is already held; aborts if it is not. Null gives null.
     */
    static sp<T> fromExisting(T* other);

    /** The same object as another type of its hierarchy, unchecked like a static_cast. */
    template <typename U>
    static sp<T> cast(const sp<U>& other);

    sp& operator=(T* other);
    // Copy and swap is safe even if both are the same.
    sp& operator=(const sp<T>& other);  // NOLINT(bugprone-unhandled-self-assignment)
    sp& operator=(sp<T>&& other) noexcept;
    template <typename U>
    sp& operator=(U* other);
    template <typename U>
    sp& operator=(const sp<U>& other);
    template <typename U>
    sp& operator=(sp<U>&& other);

    /** Drops the reference; the pointer is null afterwards. */
    void clear();

    T& operator*() const { return *m_ptr; }
    T* operator->() const { return m_ptr; }
    T* get() const { return m_ptr; }
    explicit operator bool() const { return m_ptr != nullptr; }

  private:
    template <typename U>
    friend class sp;
    template <typename U>
    friend class wp;

    static void checkNotOnStack(const void* object);

    void hold() {
        if (m_ptr != nullptr) {
            m_ptr->incStrong(this);
        }
    }
    /** Takes over a reference that has already been counted. */
    void set_pointer(T* counted) { m_ptr = counted; }
    void swap(sp& other) noexcept { std::swap(m_ptr, other.m_ptr); }

    T* m_ptr;
};

template <typename T>
void sp<T>::checkNotOnStack(const void* object) {
    constexpr uintptr_t kPageMask = ~static_cast<uintptr_t>(4095);
    const auto address = reinterpret_cast<uintptr_t>(object);
    const auto frame = reinterpret_cast<uintptr_t>(__builtin_frame_address(0));
    if ((address & kPageMask) == (frame & kPageMask)) {
        sp_report_stack_pointer(object);
    }
}

template <typename T>
sp<T>::sp(T* other) : m_ptr(other) {
    checkNotOnStack(other);
    hold();
}

template <typename T>
sp<T>::sp(const sp<T>& other) : m_ptr(other.m_ptr) {
    hold();
}

template <typename T>
template <typename U>
sp<T>::sp(U* other) : m_ptr(other) {
    checkNotOnStack(other);
    hold();
}

template <typename T>
template <typename U>
sp<T>::sp(const sp<U>& other) : m_ptr(other.m_ptr) {
    hold();
}

template <typename T>
template <typename U>
sp<T>::sp(sp<U>&& other) : m_ptr(std::exchange(other.m_ptr, nullptr)) {}

template <typename T>
template <typename... Args>
sp<T> sp<T>::make(Args&&... args) {
    T* object = new T(std::forward<Args>(args)...);
    sp<T> result;
    object->incStrong(&result);
    result.set_pointer(object);
    return result;
}

template <typename T>
sp<T> sp<T>::fromExisting(T* other) {
    sp<T> result;
    if (other != nullptr) {
        other->incStrongRequireStrong(&result);
        result.set_pointer(other);
    }
    return result;
}

template <typename T>
template <typename U>
sp<T> sp<T>::cast(const sp<U>& other) {
    return fromExisting(static_cast<T*>(other.get()));
}

// Each assignment takes the new reference before it drops the old one, because the old object may
// be the only holder of the new one.
template <typename T>
sp<T>& sp<T>::operator=(T* other) {
    sp<T>(other).swap(*this);
    return *this;
}

template <typename T>
sp<T>& sp<T>::operator=(const sp<T>& other) {
    sp<T> copy(other);
    copy.swap(*this);
    return *this;
}

template <typename T>
sp<T>& sp<T>::operator=(sp<T>&& other) noexcept {
    sp<T>(std::move(other)).swap(*this);
    return *this;
}

template <typename T>
template <typename U>
sp<T>& sp<T>::operator=(U* other) {
    sp<T>(other).swap(*this);
    return *this;
}

template <typename T>
template <typename U>
sp<T>& sp<T>::operator=(const sp<U>& other) {
    sp<T>(other).swap(*this);
    return *this;
}

template <typename T>
template <typename U>
sp<T>& sp<T>::operator=(sp<U>&& other) {
    sp<T>(std::move(other)).swap(*this);
    return *this;
}

template <typename T>
void sp<T>::clear() {
    // The pointer is null before the object's destructor runs, which may use this sp<>.
    if (T* old = std::exchange(m_ptr, nullptr)) {
        old->decStrong(this);
    }
}

// The built-in operators define no order for pointers to unrelated objects, so std::less and the
// like are used on the common pointer type.
#define ANDROID_SP_COMPARE(op, functor)                                 \
    template <typename T, typename U>                                   \
    bool operator op(const sp<T>& x, const sp<U>& y) {                  \
        return functor<std::common_type_t<T*, U*>>()(x.get(), y.get()); \
    }                                                                   \
    template <typename T, typename U>                                   \
    bool operator op(const sp<T>& x, U* y) {                            \
        return functor<std::common_type_t<T*, U*>>()(x.get(), y);       \
    }                                                                   \
    template <typename T, typename U>                                   \
    bool operator op(T* x, const sp<U>& y) {                            \
        return functor<std::common_type_t<T*, U*>>()(x, y.get());       \
    }                                                                   \
    template <typename T>                                               \
    bool operator op(const sp<T>& x, std::nullptr_t) {                  \
        return functor<T*>()(x.get(), nullptr);                         \
    }                                                                   \
    template <typename T>                                               \
    bool operator op(std::nullptr_t, const sp<T>& y) {                  \
        return functor<T*>()(nullptr, y.get());                         \
    }

ANDROID_SP_COMPARE(==, std::equal_to)
ANDROID_SP_COMPARE(!=, std::not_equal_to)
ANDROID_SP_COMPARE(<, std::less)
ANDROID_SP_COMPARE(>, std::greater)
ANDROID_SP_COMPARE(<=, std::less_equal)
ANDROID_SP_COMPARE(>=, std::greater_equal)

#undef ANDROID_SP_COMPARE

}  // namespace android
