// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <algorithm>
#include <cstdint>
#include <string>
#include <vector>

#include "explain/OggFile.h"
#include "files/InputFiles.h"
#include "files/ReadableFile.h"

namespace ogmprobe {

/** Reads the beginnings of streams, which the list of pages does not keep. */
class StreamReader {
  public:
    StreamReader(const std::string& path, const OggFile& file)
        : mContent(pathToOpen(path)), mFile(file) {}

    std::vector<uint8_t> body(const OggPage& page) {
        std::vector<uint8_t> bytes(std::min<uint64_t>(page.bodySize, kMaxHeaderBytes));
        bytes.resize(mContent.read(page.bodyOffset(), bytes).value_or(0));
        return bytes;
    }

    /**
     * Returns the bodies of the stream's data pages from `first` on, until `enough` returns true.
     */
    template <typename Enough>
    std::vector<uint8_t> bodiesFrom(const OggStream& stream, size_t first, const Enough& enough) {
        std::vector<uint8_t> bytes;
        const size_t end = std::min(stream.dataPages.size(), first + kMaxHeaderPages);
        for (size_t i = first; i < end && bytes.size() < kMaxHeaderBytes; ++i) {
            const OggPage& page = mFile.pages()[stream.dataPages[i]];
            const std::vector<uint8_t> more = body(page);
            bytes.insert(bytes.end(), more.begin(), more.end());
            if (enough(page, bytes)) {
                break;
            }
        }
        return bytes;
    }

  private:
    /** Far more than the headers of any stream need. */
    static constexpr size_t kMaxHeaderBytes = size_t{1} << 20;
    static constexpr size_t kMaxHeaderPages = 64;

    ReadableFile mContent;
    const OggFile& mFile;
};

}  // namespace ogmprobe
