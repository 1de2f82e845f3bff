// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <optional>

#include "process/SharedRing.h"
#include "records/Records.h"

namespace ogmprobe {

/** Writes records into a ring. */
class RecordWriter {
  public:
    explicit RecordWriter(RingWriter& ring) : mRing(ring) {}

    void write(const Record& record);
    /** Marks the end. */
    void end();

  private:
    void beginRecord(uint16_t type);

    RingWriter& mRing;
    uint16_t mNumber = 0;
};

/**
 * Reads records from a ring. Each is copied and checked before use: only values that a
 * `RecordWriter` can have written are returned.
 */
class RecordReader {
  public:
    explicit RecordReader(RingReader& ring) : mRing(ring) {}

    /**
     * Returns the next record; nothing at the end that the writer has marked. Throws as
     * `RingReader::read` does.
     */
    std::optional<Record> next();

  private:
    RingReader& mRing;
    uint16_t mNumber = 0;
};

}  // namespace ogmprobe
