// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <stddef.h>
#include <sys/types.h>

#include <string>

namespace android {

/** An owned byte string that formats what is appended to it by its type. */
struct AString {
    AString() = default;
    /** Null gives the empty string and a warning line. */
    AString(const char* s);  // NOLINT(google-explicit-constructor): the platform's is implicit
    AString(const char* s, size_t size);
    AString(const std::string& s);  // NOLINT(google-explicit-constructor)
    /** The `n` bytes of `from` at `offset`, which must lie inside it. */
    AString(const AString& from, size_t offset, size_t n);

    void setTo(const char* s);
    void setTo(const char* s, size_t size);
    void setTo(const AString& from, size_t offset, size_t n);

    size_t size() const { return mText.size(); }
    const char* c_str() const { return mText.c_str(); }
    bool empty() const { return mText.empty(); }
    void clear() { mText.clear(); }

    /** Removes white space at both ends. */
    void trim();
    /** Removes the `n` bytes at `start`, which must lie inside the string. */
    void erase(size_t start, size_t n);
    /** Turns the letters A to Z into small ones. */
    void tolower();

    void append(const char* s);
    void append(const char* s, size_t size);
    void append(const AString& from);
    void append(const AString& from, size_t offset, size_t n);

    /** A `char` is a character; narrower integers arrive as int and are decimal numbers. */
    void append(char x);
    void append(int x);
    void append(unsigned x);
    void append(long x);
    void append(unsigned long x);
    void append(long long x);
    void append(unsigned long long x);
    /** Six decimals; a text of more than 15 characters aborts. */
    void append(float x);
    void append(double x);
    void append(void* x);

    void insert(const AString& from, size_t insertionPos);
    void insert(const char* from, size_t size, size_t insertionPos);

    /** The place of the first occurrence at or behind `start`, or -1. */
    ssize_t find(const char* substring, size_t start = 0) const;

    /** Below, equal to or above 0 like strcmp(). */
    int compare(const AString& other) const { return mText.compare(other.mText); }
    bool equalsIgnoreCase(const AString& other) const;
    bool startsWith(const char* prefix) const;
    bool endsWith(const char* suffix) const;

    bool operator==(const AString& other) const { return mText == other.mText; }
    bool operator!=(const AString& other) const { return mText != other.mText; }
    bool operator<(const AString& other) const { return mText < other.mText; }
    bool operator>(const AString& other) const { return mText > other.mText; }

  private:
    std::string mText;
};

/** A string of any length, formatted like printf(). */
AString AStringPrintf(const char* format, ...) __attribute__((format(printf, 1, 2)));

}  // namespace android
