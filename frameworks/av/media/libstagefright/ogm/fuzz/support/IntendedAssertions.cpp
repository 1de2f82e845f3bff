// SPDX-License-Identifier: Apache-2.0
#include "IntendedAssertions.h"

#include <algorithm>
#include <cctype>

namespace android::ogm::fuzz {

namespace {

bool isDigit(char character) {
    return std::isdigit(static_cast<unsigned char>(character)) != 0;
}

/** Removes a decimal number from the front; false if there is none. */
bool skipNumber(std::string_view* text) {
    std::string_view rest = *text;
    if (!rest.empty() && rest.front() == '-') {
        rest.remove_prefix(1);
    }
    const auto end = std::find_if_not(rest.begin(), rest.end(), isDigit);
    if (end == rest.begin()) {
        return false;
    }
    rest.remove_prefix(static_cast<size_t>(end - rest.begin()));
    *text = rest;
    return true;
}

bool matches(std::string_view pattern, std::string_view text) {
    for (const char expected : pattern) {
        if (expected == '#') {
            if (!skipNumber(&text)) {
                return false;
            }
            continue;
        }
        if (text.empty() || text.front() != expected) {
            return false;
        }
        text.remove_prefix(1);
    }
    return text.empty();
}

}  // namespace

const IntendedAssertion* findIntendedAssertion(const char* tag, std::string_view text) {
    const std::string_view tagText = tag == nullptr ? std::string_view() : tag;
    if (!tagText.empty()) {
        if (text.substr(0, kPluginFolder.size()) != kPluginFolder) {
            return nullptr;
        }
        text.remove_prefix(kPluginFolder.size());
    }
    for (const IntendedAssertion& row : kIntendedAssertions) {
        if (row.tag == tagText && matches(row.text, text)) {
            return &row;
        }
    }
    return nullptr;
}

}  // namespace android::ogm::fuzz
