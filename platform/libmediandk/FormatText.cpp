// SPDX-License-Identifier: Apache-2.0
#include "FormatText.h"

namespace android::mediandk {

namespace {

struct ValueText {
    std::string operator()(int32_t value) const { return "int32(" + std::to_string(value) + ")"; }
    std::string operator()(int64_t value) const { return "int64(" + std::to_string(value) + ")"; }
    std::string operator()(size_t value) const { return "size_t(" + std::to_string(value) + ")"; }
    std::string operator()(float value) const { return "float(" + std::to_string(value) + ")"; }
    std::string operator()(double value) const { return "double(" + std::to_string(value) + ")"; }
    std::string operator()(const std::string& value) const { return "string(" + value + ")"; }
    // Bytes are shown only as "data".
    std::string operator()(const SharedBuffer&) const { return "data"; }
    std::string operator()(const Rect& rect) const {
        return "Rect(" + std::to_string(rect.left) + ", " + std::to_string(rect.top) + ", " +
               std::to_string(rect.right) + ", " + std::to_string(rect.bottom) + ")";
    }
};

}  // namespace

std::string toText(const FormatEntries& entries) {
    std::string text;
    for (const FormatEntries::Entry& entry : entries.items()) {
        text += text.empty() ? "" : ", ";
        text += entry.name + ": " + std::visit(ValueText{}, entry.value);
    }
    return text + "}";
}

}  // namespace android::mediandk
