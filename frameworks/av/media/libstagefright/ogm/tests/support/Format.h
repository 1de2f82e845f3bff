// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <media/NdkMediaFormat.h>

#include <memory>
#include <optional>
#include <string>

#include "Bytes.h"

namespace android::ogm::test {

/** Reads typed entries; returns nothing for an entry that is absent or has another type. */
std::optional<std::string> stringOf(AMediaFormat* format, const char* key);
std::optional<int32_t> int32Of(AMediaFormat* format, const char* key);
std::optional<int64_t> int64Of(AMediaFormat* format, const char* key);
std::optional<Bytes> bufferOf(AMediaFormat* format, const char* key);

/** Owns a media format. */
class Format {
  public:
    Format() : mFormat(AMediaFormat_new()) {}

    AMediaFormat* get() const { return mFormat.get(); }
    std::optional<std::string> string(const char* key) const { return stringOf(get(), key); }
    std::optional<int32_t> int32(const char* key) const { return int32Of(get(), key); }
    std::optional<int64_t> int64(const char* key) const { return int64Of(get(), key); }
    std::optional<Bytes> buffer(const char* key) const { return bufferOf(get(), key); }
    /** All entries, as the platform's text. */
    std::string text() const { return AMediaFormat_toString(get()); }

  private:
    struct Delete {
        void operator()(AMediaFormat* format) const { AMediaFormat_delete(format); }
    };
    std::unique_ptr<AMediaFormat, Delete> mFormat;
};

}  // namespace android::ogm::test
