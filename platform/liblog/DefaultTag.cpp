// SPDX-License-Identifier: Apache-2.0
#include "DefaultTag.h"

#include <errno.h>

#include <mutex>
#include <utility>

#include <android/log.h>

namespace android::log {

namespace {

struct TagHolder {
    std::mutex lock;
    std::shared_ptr<const std::string> tag =
            std::make_shared<const std::string>(program_invocation_short_name);
};

TagHolder& holder() {
    // Never destroyed: messages may still be logged while the program ends.
    static TagHolder& theHolder = *new TagHolder;
    return theHolder;
}

}  // namespace

std::shared_ptr<const std::string> defaultTag() {
    const std::lock_guard<std::mutex> lock(holder().lock);
    return holder().tag;
}

}  // namespace android::log

void __android_log_set_default_tag(const char* tag) {
    auto newTag = std::make_shared<const std::string>(tag);
    const std::lock_guard<std::mutex> lock(android::log::holder().lock);
    android::log::holder().tag = std::move(newTag);
}
