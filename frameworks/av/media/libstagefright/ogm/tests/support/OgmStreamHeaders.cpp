// SPDX-License-Identifier: Apache-2.0
#include "OgmStreamHeaders.h"

#include <stdexcept>

namespace android::ogm::test {
namespace {

void appendPadded(Bytes& to, const std::string& text, size_t width) {
    if (text.size() > width) {
        throw std::length_error("the text does not fit its field");
    }
    append(to, bytesOf(text));
    to.insert(to.end(), width - text.size(), 0);
}

}  // namespace

Bytes StreamHeaderFields::bytes() const {
    Bytes header{packetType};
    appendPadded(header, streamType, 8);
    appendPadded(header, subtype, 4);
    appendLittleEndian(header, headerSize, 4);
    appendLittleEndian(header, timeUnit, 8);
    appendLittleEndian(header, samplesPerUnit, 8);
    appendLittleEndian(header, defaultLength, 4);
    appendLittleEndian(header, bufferSize, 4);
    appendLittleEndian(header, bitsPerSample, 2);
    appendLittleEndian(header, padding, 2);
    return header;
}

Bytes VideoHeader::bytes() const {
    Bytes header = StreamHeaderFields::bytes();
    appendLittleEndian(header, width, 4);
    appendLittleEndian(header, height, 4);
    return header;
}

Bytes AudioHeader::bytes() const {
    Bytes header = StreamHeaderFields::bytes();
    appendLittleEndian(header, channels, 2);
    appendLittleEndian(header, blockAlign, 2);
    appendLittleEndian(header, averageBytesPerSecond, 4);
    return header;
}

Bytes textHeader() {
    StreamHeaderFields fields;
    fields.streamType = "text";
    fields.timeUnit = 10000;
    Bytes header = fields.bytes();
    header.resize(kStreamHeaderSize);
    return header;
}

Bytes vorbisIdentificationHeader() {
    Bytes header = joined({{0x01}, bytesOf("vorbis")});
    appendLittleEndian(header, 0, 4);  // version
    header.push_back(2);               // channels
    appendLittleEndian(header, 44100, 4);
    appendLittleEndian(header, 0, 4);  // maximum, nominal and minimum bit rate
    appendLittleEndian(header, 128000, 4);
    appendLittleEndian(header, 0, 4);
    header.push_back(0xB8);  // block sizes
    header.push_back(0x01);  // framing
    return header;
}

Bytes vorbisCommentHeader() {
    Bytes header = joined({{0x03}, bytesOf("vorbis")});
    appendLittleEndian(header, 4, 4);
    append(header, bytesOf("test"));
    appendLittleEndian(header, 0, 4);
    header.push_back(0x01);
    return header;
}

Bytes theoraIdentificationHeader() {
    Bytes header = joined({{0x80}, bytesOf("theora")});
    header.resize(42);
    return header;
}

Bytes commentHeader() {
    return vorbisCommentHeader();
}

}  // namespace android::ogm::test
