// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <media/MediaExtractorPluginApi.h>

#include "PlatformLog.h"
#include "SessionInput.h"

namespace android::ogm::fuzz {

/**
 * A data source over the bytes of a file that fails where the input says so. It tells the searches
 * without end apart that are meant:
 *
 * - After a number of reads it falls silent: every further read gives nothing. A walk over the
 *   pages that comes back to the same place for ever ends with that. One that goes on reading all
 *   the same is a finding.
 * - The search for a start code before MPEG-4 pictures reads nothing, so the bytes that would
 *   set it off are recognised when they are asked for: the run ends there.
 */
class ScriptedSource : public LogObserver {
  public:
    ScriptedSource(const SessionInput& input, const Bytes& file);
    ScriptedSource(const ScriptedSource&) = delete;
    ScriptedSource& operator=(const ScriptedSource&) = delete;
    ~ScriptedSource() override { setLogObserver(nullptr); }

    CDataSource* table() { return &mTable; }

    /** Bytes that have been handed over. */
    uint64_t delivered() const { return mDelivered; }
    size_t reads() const { return mReads; }
    /** Whether all further reads give nothing. */
    bool isSilent() const;
    /** To be called before each call of the plug-in: reads in silence are counted for each. */
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

    /** The bytes in which a start code is searched, while none has been found. */
    Bytes mSearched;
    bool mSearching = false;
    bool mPayloadIsNext = false;
};

/** Whether the search for a start code among these bytes does not end. */
bool searchesForever(ByteView data);

}  // namespace android::ogm::fuzz
