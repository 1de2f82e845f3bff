// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <memory>
#include <optional>

#include "LogTest.h"
#include "MemorySource.h"
#include "OgmFile.h"
#include "page/PageReader.h"

namespace android::ogm::test {

/** Reads the pages of a file and records log lines and reads. */
class PagesTest : public LogTest {
  protected:
    /** The pages of a new source, whose size has been read. */
    const PageReader& openPages(std::unique_ptr<MemorySource> source) {
        mSource = std::move(source);
        mPages.emplace(std::make_unique<DataSourceHelper>(mSource->table()));
        mPages->readDataSourceSize();
        return *mPages;
    }
    const PageReader& openPages(const Bytes& bytes) {
        return openPages(std::make_unique<MemorySource>(bytes, &mEvents));
    }
    const PageReader& openPages(const OgmFile& file) { return openPages(file.bytes()); }

    std::unique_ptr<MemorySource> mSource;
    std::optional<PageReader> mPages;
};

}  // namespace android::ogm::test
