// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <media/MediaExtractorPluginHelper.h>

namespace android::ogm {

/** Appends delivered audio to a file, if a system property asks for it when the track is made. */
class AudioDump {
  public:
    AudioDump();

    bool isOn() const { return mDumpAudio; }
    void write(MediaBufferHelper* buffer) const;

  private:
    const bool mDumpAudio;
};

}  // namespace android::ogm
