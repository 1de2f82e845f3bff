// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <string>
#include <vector>

/**
 * Numbers as a page stores them: columns of bytes, compressed together. The page's script unpacks
 * them (unpack.js).
 */
namespace ogmprobe::timeline {

/** More than 17 years; the page's numbers are exact up to this. */
inline constexpr int64_t kFarthestUs = int64_t{1} << 49;

/** A column of numbers, each as LEB128: seven bits per byte, the lowest first. */
class Column {
  public:
    void add(uint64_t number);
    /** Small numbers, positive or negative, stay short. */
    void addSigned(int64_t number);
    void addByte(uint8_t byte) { mBytes.push_back(byte); }

    const std::vector<uint8_t>& bytes() const { return mBytes; }

  private:
    std::vector<uint8_t> mBytes;
};

/**
 * Numbers that rise or fall steadily: each as the change of its difference from the previous one.
 */
class SteadyColumn {
  public:
    /** Limits the number to plus or minus `kFarthestUs`. */
    void add(int64_t number);
    const Column& column() const { return mColumn; }

  private:
    Column mColumn;
    int64_t mLast = 0;
    int64_t mDistance = 0;
};

/** All columns of a page, one after the other. */
class PackedColumns {
  public:
    /** Adds a column and returns its number of bytes. */
    size_t add(const Column& column);
    /** Returns the columns compressed (RFC 1950) as text (RFC 4648). */
    std::string text() const;

  private:
    std::vector<uint8_t> mBytes;
};

}  // namespace ogmprobe::timeline
