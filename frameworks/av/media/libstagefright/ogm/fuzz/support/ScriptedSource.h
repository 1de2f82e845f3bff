// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <media/MediaExtractorPluginApi.h>

#include "PlatformLog.h"
#include "SessionInput.h"

namespace android::ogm::fuzz {

/**
 * A data source over the bytes of a file that fails as the input says. It recognises the intended
 * endless searches:
 *
 * - After a number of reads it falls silent: all further reads return nothing. That ends a search
 *   that always returns to the same place. A call that still reads after that is a finding.
 * - The search for a start code before MPEG-4 pictures reads nothing. So the bytes that would start
 *   such a search are recognised when they are read, and end the run.
 */
class ScriptedSource : public LogObserver {
  public:
    ScriptedSource(const SessionInput& input, const Bytes& file);
    ScriptedSource(const ScriptedSource&) = delete;
    ScriptedSource& operator=(const ScriptedSource&) = delete;
    ~ScriptedSource() override { setLogObserver(nullptr); }

    CDataSource* table() { return &mTable; }

    /** Number of bytes that reads have returned. */
    uint64_t delivered() const { return mDelivered; }
    size_t reads() const { return mReads; }
    /** Whether all further reads return nothing. */
    bool isSilent() const;
    /** To be called before each call of the plug-in: reads in silence are counted per call. */
    void beginCall() { mReadsInSilence = 0; }

    void onLogLine(const char* format) override;

  private:
    ssize_t readAt(int64_t offset, uint8_t* data, size_t size);
    ssize_t serve(int64_t offset, uint8_t* data, size_t size);
    void endSilence();
    ssize_t applyFaults(size_t size, ssize_t available) const;
    void watchPayload(const uint8_t* data, size_t size, ssize_t count);

    CDataSource mTable;
    const SessionInput& mInput;
    const Bytes& mFile;
    size_t mReads = 0;
    size_t mReadsInSilence = 0;
    uint64_t mDelivered = 0;

    /** The bytes in which no start code has been found yet. */
    Bytes mSearched;
    bool mSearching = false;
    bool mPayloadIsNext = false;
};

/** Whether the search for a start code among these bytes does not end. */
bool searchesForever(ByteView data);

}  // namespace android::ogm::fuzz
