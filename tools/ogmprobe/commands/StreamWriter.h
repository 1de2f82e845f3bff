// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <memory>
#include <vector>

#include "files/NewFile.h"
#include "plugin/TrackDescription.h"
#include "records/Packet.h"

namespace ogmprobe {

/** Writes a track's buffers into a file. */
class StreamWriter {
  public:
    /** The file must outlive the writer. */
    explicit StreamWriter(NewFile& file) : mFile(file) {}
    virtual ~StreamWriter() = default;

    /** Writes the next buffer of the track. */
    virtual void write(const Packet& packet) = 0;
    /** Called after the last buffer; the file can then be committed. */
    virtual void finish() {}

  protected:
    NewFile& file() const { return mFile; }

  private:
    NewFile& mFile;
};

/** Returns the writer for the track's codec. Writers throw as `NewFile` does. */
std::unique_ptr<StreamWriter> makeStreamWriter(const TrackDescription& track, NewFile& file);

/**
 * Returns the 44 bytes that begin a WAV file of 16-bit PCM. Its fields have 32 bits: larger values
 * become the largest one, which players read as "to the end".
 */
std::vector<uint8_t> wavHeader(uint32_t sampleRate, uint16_t channels, uint64_t dataBytes);

/** Returns the block size of packets: the usual one for the sample rate if it divides them. */
uint64_t adpcmBlock(uint32_t sampleRate, uint16_t channels, uint64_t packetSize);
/** Returns the header of a WAV file of MS ADPCM. */
std::vector<uint8_t> adpcmWavHeader(uint32_t sampleRate, uint16_t channels, uint64_t block,
                                    uint64_t dataBytes);

}  // namespace ogmprobe
