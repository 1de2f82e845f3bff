// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <optional>

#include "process/SharedRing.h"
#include "records/Records.h"

namespace ogmprobe {

/** Puts records into a ring. */
class RecordWriter {
  public:
    explicit RecordWriter(RingWriter& ring) : mRing(ring) {}

    void write(const Record& record);
    /** Nothing follows. */
    void end();

  private:
    void beginRecord(uint16_t type);

    RingWriter& mRing;
    uint16_t mNumber = 0;
};

/**
 * Takes records out of a ring. Each is copied and checked before anyone looks at it; only values
 * that a `RecordWriter` can have written come out.
 */
class RecordReader {
  public:
    explicit RecordReader(RingReader& ring) : mRing(ring) {}

    /** Nothing at the end that the writer has announced. Throws as `RingReader::read` does. */
    std::optional<Record> next();

  private:
    RingReader& mRing;
    uint16_t mNumber = 0;
};

}  // namespace ogmprobe
