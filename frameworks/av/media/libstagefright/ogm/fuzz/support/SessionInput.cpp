// SPDX-License-Identifier: Apache-2.0
#include "SessionInput.h"

#include <algorithm>
#include <iterator>
#include <limits>

#include "base/Wrap.h"

namespace android::ogm::fuzz {

namespace {

constexpr uint8_t kElementary = 0x01;
constexpr uint8_t kComposedLog = 0x02;
constexpr int kFaultsShift = 2;
constexpr uint8_t kSizeKinds = 8;

/** The part of a file that the plug-in scans for its duration. */
constexpr int64_t kTailSize = 650520;
constexpr int64_t kHugeSize = int64_t{1} << 62;

void append16(Bytes* to, uint16_t value) {
    to->push_back(static_cast<uint8_t>(value & 0xFF));
    to->push_back(static_cast<uint8_t>(value >> 8));
}

Fault readFault(InputReader* input) {
    Fault fault;
    fault.kind = static_cast<FaultKind>(input->u8() % kFaultKinds);
    fault.firstRead = input->u16();
    fault.count = input->u8();
    return fault;
}

Call readCall(InputReader* input) {
    Call call;
    call.operation = static_cast<Operation>(input->u8() % kOperations);
    call.argument = input->u8();
    call.time = input->u16();
    return call;
}

}  // namespace

SessionInput::SessionInput(const uint8_t* data, size_t size) {
    InputReader input(data, size);
    const uint8_t options = input.u8();
    elementary = (options & kElementary) != 0;
    composedLog = (options & kComposedLog) != 0;
    sizeKind = static_cast<ReportedSize>(input.u8() % kSizeKinds);
    sizeValue = input.u16();
    for (size_t i = options >> kFaultsShift & kMaxFaults; i > 0; --i) {
        faults.push_back(readFault(&input));
    }
    for (size_t i = input.u8(); i > 0; --i) {
        calls.push_back(readCall(&input));
    }
    file = bytesOf(input.rest());
}

Bytes SessionInput::bytes() const {
    const size_t faultCount = std::min(faults.size(), kMaxFaults);
    const size_t callCount = std::min(calls.size(), kMaxCalls);
    Bytes all;
    all.push_back(static_cast<uint8_t>((elementary ? kElementary : 0U) |
                                       (composedLog ? kComposedLog : 0U) |
                                       faultCount << kFaultsShift));
    all.push_back(static_cast<uint8_t>(sizeKind));
    append16(&all, sizeValue);
    for (size_t i = 0; i < faultCount; ++i) {
        all.push_back(static_cast<uint8_t>(faults[i].kind));
        append16(&all, faults[i].firstRead);
        all.push_back(faults[i].count);
    }
    all.push_back(static_cast<uint8_t>(callCount));
    for (size_t i = 0; i < callCount; ++i) {
        all.push_back(static_cast<uint8_t>(calls[i].operation));
        all.push_back(calls[i].argument);
        append16(&all, calls[i].time);
    }
    all.insert(all.end(), file.begin(), file.end());
    return all;
}

int64_t SessionInput::reportedSize(size_t size) const {
    const auto actual = static_cast<int64_t>(size);
    switch (sizeKind) {
        case ReportedSize::kTrue:
            return actual;
        case ReportedSize::kUnknown:
            return -1;
        case ReportedSize::kZero:
            return 0;
        case ReportedSize::kNegative:
            return -int64_t{sizeValue} - 1;
        case ReportedSize::kSmaller:
            return std::max<int64_t>(actual - sizeValue, 0);
        case ReportedSize::kLarger:
            return actual + sizeValue;
        case ReportedSize::kWithTail:
            return kTailSize + sizeValue;
        case ReportedSize::kHuge:
            return kHugeSize + sizeValue;
    }
    return actual;
}

int64_t seekTimeUs(uint16_t time, int64_t durationUs) {
    constexpr int64_t kSpecialTimes[] = {std::numeric_limits<int64_t>::min(),
                                         std::numeric_limits<int64_t>::max(),
                                         -1,
                                         0,
                                         1,
                                         2'999'999,
                                         3'000'000,
                                         3'000'001};
    constexpr int kUnitShift = 14;
    constexpr int64_t kMiddle = 1 << (kUnitShift - 1);
    const int64_t value = time & ((1 << kUnitShift) - 1);
    switch (time >> kUnitShift) {
        case 0:
            return value * 100'000;
        case 1:
            return value * 1000;
        case 2:
            return wrapAdd(durationUs, (value - kMiddle) * 100);
        default:
            return kSpecialTimes[static_cast<size_t>(value) % std::size(kSpecialTimes)];
    }
}

}  // namespace android::ogm::fuzz
