// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <utility>

#include "records/Records.h"

namespace ogmprobe {

/**
 * The records that only some commands want: each call of the plug-in, each read of its data source,
 * each buffer as it comes out. Nothing is made of them unless a sink is set.
 *
 * There is one sink for the process, because a data-source read does not know whom it is for.
 */
class Trace {
  public:
    /** Null: no trace. The sink must outlive its use. */
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
