// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

#include "check/CodecXml.h"

namespace ogmprobe::check {

/** Parses a list of codecs with this text. */
inline CodecXml read(const std::string& text) {
    return readCodecXml({"device/media_codecs.xml"}, {{"device/media_codecs.xml", text}});
}

/** The only decoder of a list with these elements. */
inline Decoder decoder(const std::string& elements, const std::string& settings = "") {
    const CodecXml xml = read("<MediaCodecs>" + settings + "<Decoders>" + elements +
                              "</Decoders></MediaCodecs>");
    EXPECT_EQ(xml.error, "");
    EXPECT_THAT(xml.decoders, testing::SizeIs(1));
    return xml.decoders.empty() ? Decoder() : xml.decoders.front();
}

}  // namespace ogmprobe::check
