// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <media/MediaExtractorPluginHelper.h>

namespace android::ogm {

/** Appends returned audio to a file if a system property was set when the track was created. */
class AudioDump {
  public:
    AudioDump();

    bool isOn() const { return mDumpAudio; }
    void write(MediaBufferHelper* buffer) const;

  private:
    const bool mDumpAudio;
};

}  // namespace android::ogm
