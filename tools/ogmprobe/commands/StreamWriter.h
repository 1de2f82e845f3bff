// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <memory>
#include <vector>

#include "files/NewFile.h"
#include "plugin/TrackDescription.h"
#include "records/Packet.h"

namespace ogmprobe {

/** Turns a track's buffers into the contents of a file. */
class StreamWriter {
  public:
    /** The file must outlive the writer. */
    explicit StreamWriter(NewFile& file) : mFile(file) {}
    virtual ~StreamWriter() = default;

    /** The next buffer of the track. */
    virtual void write(const Packet& packet) = 0;
    /** After the last buffer; the file is then ready to be committed. */
    virtual void finish() {}

  protected:
    NewFile& file() const { return mFile; }

  private:
    NewFile& mFile;
};

/** The writer for the track's codec. Functions of writers throw as those of `NewFile` do. */
std::unique_ptr<StreamWriter> makeStreamWriter(const TrackDescription& track, NewFile& file);

/**
 * The 44 bytes that begin a WAV file of 16-bit PCM. Its fields have 32 bits: what does not fit is
 * given as the largest value, which players take as "to the end".
 */
std::vector<uint8_t> wavHeader(uint32_t sampleRate, uint16_t channels, uint64_t dataBytes);

/** The size of a block, by which packets come: the usual one of the rate if it fits. */
uint64_t adpcmBlock(uint32_t sampleRate, uint16_t channels, uint64_t packetSize);
/** What begins a WAV file of MS ADPCM. */
std::vector<uint8_t> adpcmWavHeader(uint32_t sampleRate, uint16_t channels, uint64_t block,
                                    uint64_t dataBytes);

}  // namespace ogmprobe
