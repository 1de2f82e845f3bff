// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <utility>

#include "records/RecordSink.h"

namespace ogmprobe {

/**
 * The records that only some commands need: each call of the plug-in, each read of its data source,
 * each returned buffer. They are made only if a sink is set.
 *
 * There is one sink per process, because a data-source read does not know who needs it.
 */
class Trace {
  public:
    /** Sets the sink, which must outlive its use; null means no trace. */
    static void into(const RecordSink* sink) { sSink = sink; }

    template <typename T, typename... Fields>
    static void add(Fields&&... fields) {
        if (sSink != nullptr) {
            (*sSink)(T{std::forward<Fields>(fields)...});
        }
    }

  private:
    static inline const RecordSink* sSink = nullptr;
};

}  // namespace ogmprobe
