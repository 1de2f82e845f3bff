// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Bytes.h"
#include "base/ByteBuffer.h"
#include "base/ByteView.h"

/** Converts between the bytes of tests and those of the plug-in. */
namespace android::ogm::test {

/** A view for the plug-in's functions; the bytes must outlive it. */
inline ByteView viewOf(const Bytes& bytes) {
    return {bytes.data(), bytes.size()};
}

inline Bytes bytesOf(ByteView view) {
    return Bytes(view.data(), view.data() + view.size());
}

inline Bytes bytesOf(const ByteBuffer& buffer) {
    return bytesOf(buffer.view());
}

}  // namespace android::ogm::test
