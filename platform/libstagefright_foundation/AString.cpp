// SPDX-License-Identifier: Apache-2.0
#include <media/stagefright/foundation/AString.h>

#include <android/log.h>
#include <ctype.h>
#include <stdarg.h>
#include <stdio.h>
#include <string.h>
#include <strings.h>

#include <string_view>

#include "LibraryAssert.h"

namespace android {

namespace {

constexpr char kTag[] = "AString";

// Numbers of any other type fit too; a floating-point number may not.
constexpr size_t kMaxFloatText = 15;

void checkInside(const char* place, const char* check, size_t position, size_t size) {
    if (position > size) {
        comparisonFailed({kTag, place, check}, position, size);
    }
}

bool isSpace(char c) {
    return isspace(static_cast<unsigned char>(c)) != 0;
}

}  // namespace

AString::AString(const char* s) {
    if (s == nullptr) {
        __android_log_write(ANDROID_LOG_WARN, kTag, "a null text is taken as the empty string");
        return;
    }
    mText = s;
}

AString::AString(const char* s, size_t size) : mText(s, size) {}

AString::AString(const std::string& s) : mText(s) {}

AString::AString(const AString& from, size_t offset, size_t n) {
    setTo(from, offset, n);
}

void AString::setTo(const char* s) {
    mText = s;
}

void AString::setTo(const char* s, size_t size) {
    mText.assign(s, size);
}

void AString::setTo(const AString& from, size_t offset, size_t n) {
    checkInside("AString.cpp:148", "CHECK_LE( offset,from.size())", offset, from.size());
    checkInside("AString.cpp:149", "CHECK_LE( n,from.size() - offset)", n, from.size() - offset);
    mText = from.mText.substr(offset, n);
}

void AString::trim() {
    size_t end = mText.size();
    while (end > 0 && isSpace(mText[end - 1])) {
        --end;
    }
    size_t start = 0;
    while (start < end && isSpace(mText[start])) {
        ++start;
    }
    mText = mText.substr(start, end - start);
}

void AString::erase(size_t start, size_t n) {
    checkInside("AString.cpp:186", "CHECK_LE( start,size())", start, size());
    checkInside("AString.cpp:187", "CHECK_LE( n,size() - start)", n, size() - start);
    mText.erase(start, n);
}

// The letters of ASCII only: the text may be of any encoding.
void AString::tolower() {
    for (char& c : mText) {
        if (c >= 'A' && c <= 'Z') {
            c = static_cast<char>(c - 'A' + 'a');
        }
    }
}

void AString::append(const char* s) {
    mText.append(s);
}

void AString::append(const char* s, size_t size) {
    mText.append(s, size);
}

void AString::append(const AString& from) {
    mText.append(from.mText);
}

void AString::append(const AString& from, size_t offset, size_t n) {
    append(AString(from, offset, n));
}

void AString::append(char x) {
    mText.push_back(x);
}

void AString::append(int x) {
    append(AStringPrintf("%d", x));
}

void AString::append(unsigned x) {
    append(AStringPrintf("%u", x));
}

void AString::append(long x) {
    append(AStringPrintf("%ld", x));
}

void AString::append(unsigned long x) {
    append(AStringPrintf("%lu", x));
}

void AString::append(long long x) {
    append(AStringPrintf("%lld", x));
}

void AString::append(unsigned long long x) {
    append(AStringPrintf("%llu", x));
}

void AString::append(float x) {
    append(static_cast<double>(x));
}

void AString::append(double x) {
    const AString text = AStringPrintf("%f", x);
    checkInside("AString.cpp:262", "CHECK_LE( text.size(),kMaxFloatText)", text.size(),
                kMaxFloatText);
    append(text);
}

void AString::append(void* x) {
    append(AStringPrintf("%p", x));
}

void AString::insert(const AString& from, size_t insertionPos) {
    insert(from.c_str(), from.size(), insertionPos);
}

void AString::insert(const char* from, size_t size, size_t insertionPos) {
    checkInside("AString.cpp:284", "CHECK_LE( insertionPos,size())", insertionPos, mText.size());
    mText.insert(insertionPos, from, size);
}

ssize_t AString::find(const char* substring, size_t start) const {
    checkInside("AString.cpp:212", "CHECK_LE( start,size())", start, size());
    const size_t position = mText.find(substring, start);
    return position == std::string::npos ? -1 : static_cast<ssize_t>(position);
}

bool AString::equalsIgnoreCase(const AString& other) const {
    return size() == other.size() && strncasecmp(c_str(), other.c_str(), size()) == 0;
}

bool AString::startsWith(const char* prefix) const {
    return mText.compare(0, strlen(prefix), prefix) == 0;
}

bool AString::endsWith(const char* suffix) const {
    const std::string_view tail(suffix);
    return size() >= tail.size() && mText.compare(size() - tail.size(), tail.size(), tail) == 0;
}

AString AStringPrintf(const char* format, ...) {
    va_list arguments;
    va_start(arguments, format);
    va_list again;
    va_copy(again, arguments);
    const int length = vsnprintf(nullptr, 0, format, arguments);
    va_end(arguments);
    std::string text(length > 0 ? static_cast<size_t>(length) : 0, '\0');
    // The terminating 0 falls on the byte that std::string keeps behind its text for it.
    vsnprintf(text.data(), text.size() + 1, format, again);
    va_end(again);
    return AString(text);
}

}  // namespace android
