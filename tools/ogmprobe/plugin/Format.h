// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <media/NdkMediaFormat.h>

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "plugin/FormatEntries.h"

namespace ogmprobe {

/**
 * An `AMediaFormat` that is deleted with this object. Values of another type are treated as absent.
 */
class Format {
  public:
    Format() : mFormat(AMediaFormat_new()) {}

    /** Returns the format for the plug-in to fill; this object keeps it. */
    AMediaFormat* get() const { return mFormat.get(); }

    std::optional<int32_t> int32(const char* key) const;
    std::optional<int64_t> int64(const char* key) const;
    std::optional<std::string> string(const char* key) const;
    /** Returns a copy of the bytes. */
    std::optional<std::vector<uint8_t>> buffer(const char* key) const;
    /** Returns all entries, whatever their names. */
    std::vector<FormatEntry> entries() const { return entriesOf(get()); }
    static std::vector<FormatEntry> entriesOf(AMediaFormat* format);

  private:
    struct Delete {
        void operator()(AMediaFormat* format) const { AMediaFormat_delete(format); }
    };
    std::unique_ptr<AMediaFormat, Delete> mFormat;
};

}  // namespace ogmprobe
