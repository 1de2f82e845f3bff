// SPDX-License-Identifier: Apache-2.0
#include "seek/SeekPlan.h"

#include "base/Wrap.h"

namespace android::ogm {

namespace {

/** A seek up to this time goes to the first data page. */
constexpr int64_t kMaxStartSeekUs = 2'999'999;
/** A seek this close to the end goes to the end. */
constexpr int64_t kEndZoneUs = 200'000;
/** A scan may end this far after its target. */
constexpr int64_t kScanToleranceUs = 2'000'000;

constexpr int64_t kLongStep = 0x40000;
constexpr int64_t kShortStep = 0x10000;
constexpr int64_t kMinOffsetForLongStep = 0x50000;

}  // namespace

SeekGoal chooseSeekGoal(int64_t timeUs, int64_t durationUs) {
    if (timeUs <= kMaxStartSeekUs) {
        return SeekGoal::kStart;
    }
    if (durationUs != 0 && wrapSub(durationUs, timeUs) < kEndZoneUs) {
        return SeekGoal::kEnd;
    }
    return SeekGoal::kScan;
}

int64_t estimateOffset(int64_t targetUs, int64_t durationUs, int64_t firstDataPageOffset,
                       int64_t dataSourceSize) {
    const int64_t dataSize = wrapSub(dataSourceSize, firstDataPageOffset);
    return wrapAdd(firstDataPageOffset, wrapDiv(wrapMul(dataSize, targetUs), durationUs));
}

int64_t stepBackFrom(int64_t offset) {
    if (offset >= kMinOffsetForLongStep) {
        return offset - kLongStep;
    }
    return offset >= kShortStep ? offset - kShortStep : 0;
}

bool isScanTooLate(int64_t reachedUs, int64_t targetUs) {
    return wrapSub(reachedUs, targetUs) > kScanToleranceUs;
}

}  // namespace android::ogm
