// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <media/MediaExtractorPluginApi.h>

#include <cstddef>
#include <cstdint>
#include <string>

namespace android::ogm::bench {

/** A data source that counts the reads. */
class Source {
  public:
    virtual ~Source() = default;
    Source(const Source&) = delete;
    Source& operator=(const Source&) = delete;

    CDataSource* table() { return &mTable; }
    uint64_t reads() const { return mReads; }

  protected:
    Source();

    virtual ssize_t readAt(int64_t offset, void* data, size_t size) = 0;
    virtual int64_t size() const = 0;

  private:
    CDataSource mTable{};
    uint64_t mReads = 0;
};

/** A file that is mapped into memory. Opening it reads all its pages once. */
class MappedFile {
  public:
    explicit MappedFile(const std::string& path);
    ~MappedFile();
    MappedFile(const MappedFile&) = delete;
    MappedFile& operator=(const MappedFile&) = delete;

    const uint8_t* data() const { return mData; }
    size_t size() const { return mSize; }

  private:
    const uint8_t* mData = nullptr;
    size_t mSize = 0;
};

/** Bytes in memory that the caller owns. */
class MemorySource : public Source {
  public:
    MemorySource(const uint8_t* data, size_t size) : mData(data), mSize(size) {}
    explicit MemorySource(const MappedFile& file) : MemorySource(file.data(), file.size()) {}

  protected:
    ssize_t readAt(int64_t offset, void* data, size_t size) override;
    int64_t size() const override { return static_cast<int64_t>(mSize); }

  private:
    const uint8_t* mData;
    size_t mSize;
};

/** A file that is read with pread, as the framework does. */
class FileSource : public Source {
  public:
    explicit FileSource(const std::string& path);
    ~FileSource() override;

  protected:
    ssize_t readAt(int64_t offset, void* data, size_t size) override;
    int64_t size() const override { return mSize; }

  private:
    int64_t mSize = 0;
    int mDescriptor;
};

}  // namespace android::ogm::bench
