// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "Process.h"
#include "TemporaryFolder.h"

namespace ogmprobe::test {

/** Scripts for the fake plug-in, which FakeExtractor.cpp describes. */
inline nlohmann::json fakeVideo() {
    return {{"format",
             {{"mime", "video/avc"}, {"width", 64}, {"height", 48}, {"durationUs", 120000}}},
            {"buffers",
             {{{"time_us", 0}, {"sync", 1}, {"hex", "0001"}},
              {{"time_us", 80000}, {"hex", "0203"}},
              {{"time_us", 40000}, {"hex", "04"}}}}};
}

inline nlohmann::json fakeAudio() {
    return {{"format",
             {{"mime", "audio/raw"},
              {"sample-rate", 8000},
              {"channel-count", 1},
              {"durationUs", 120000}}},
            {"buffers",
             {{{"time_us", 0}, {"sync", 1}, {"hex", "1111"}},
              {{"time_us", 60000}, {"sync", 1}, {"hex", "2222"}}}}};
}

inline nlohmann::json fakeFile(const std::vector<nlohmann::json>& tracks) {
    return {{"fake", true},
            {"container", {{"mime", "video/fake"}, {"durationUs", 120000}}},
            {"tracks", tracks}};
}

/** Runs the program with the fake plug-in on a script. */
class FakePlugin {
  public:
    std::string file(const nlohmann::json& script, const std::string& name = "a.fake") const {
        return mFolder.write(name, script.dump());
    }

    static ProcessResult run(std::vector<std::string> arguments, const ProcessSetup& setup = {}) {
        arguments.insert(arguments.begin(), {"--plugin", testedBuild().fakePlugin});
        return runProbe(arguments, setup);
    }

    const TemporaryFolder& folder() const { return mFolder; }

  private:
    TemporaryFolder mFolder;
};

}  // namespace ogmprobe::test
