// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>

namespace android::ogm::test {

/** What a rival's sniff passes to its creator. */
class RivalMeta {
  public:
    bool intact() const { return mMark == kMark; }

  private:
    static constexpr uint64_t kMark = 0x5249'5641'4C21'0001;
    const uint64_t mMark = kMark;
};

}  // namespace android::ogm::test
