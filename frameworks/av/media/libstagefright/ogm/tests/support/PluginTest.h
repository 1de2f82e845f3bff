// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <vector>

#include "EventLog.h"
#include "MemorySource.h"
#include "OgmFile.h"
#include "Plugin.h"

namespace android::ogm::test {

/** A source and its extractor, which is freed first. */
struct OpenedFile {
    std::unique_ptr<MemorySource> source;
    Extractor extractor;

    Extractor* operator->() { return &extractor; }
};

/** Uses the plug-in through its entry point and records its log lines and reads. */
class PluginTest : public ::testing::Test {
  protected:
    PluginTest() {
        pluginDefinition();
        MemorySource warmUp(oneVideoOneAudioFile({}).bytes());
        openFile(warmUp);  // finds the creator, so that a test's events contain no sniff
        mEvents.clear();
    }

    std::unique_ptr<MemorySource> sourceOf(const OgmFile& file) {
        return std::make_unique<MemorySource>(file.bytes(), &mEvents);
    }

    OpenedFile open(std::unique_ptr<MemorySource> source) {
        Extractor extractor = openFile(*source);
        return {std::move(source), std::move(extractor)};
    }

    OpenedFile open(const OgmFile& file) { return open(sourceOf(file)); }

    /** Opens the file and clears the events. */
    OpenedFile openQuietly(const OgmFile& file) {
        OpenedFile opened = open(file);
        mEvents.clear();
        return opened;
    }

    /** The first `count` events, or all if there are fewer. */
    std::vector<Event> firstEvents(size_t count) const {
        std::vector<Event> events = mEvents.events();
        events.resize(std::min(count, events.size()));
        return events;
    }

    EventLog mEvents;
    LogCapture mCapture{mEvents};
};

}  // namespace android::ogm::test
