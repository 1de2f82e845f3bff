// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "FakeFile.h"

namespace ogmprobe::test {

/** A folder with files of the fake plug-in, and the command with all of them. */
class ManyFiles : public testing::Test {
  protected:
    std::string add(const std::string& name, const std::string& mischief = "") const {
        nlohmann::json video = fakeVideo();
        if (!mischief.empty()) {
            video["end"] = mischief;
        }
        return mPlugin.file(fakeFile({video}), name);
    }
    std::string folder() const { return mPlugin.folder().path().string(); }
    std::string path(const std::string& name) const { return mPlugin.folder().path(name); }

    ProcessResult check(std::vector<std::string> options = {},
                        const ProcessSetup& setup = {}) const {
        options.insert(options.begin(), {"check", folder(), "--timeout", "0.5"});
        return FakePlugin::run(options, setup);
    }
    size_t linesOf(const std::string& name) const {
        const std::string text = mPlugin.folder().read(name);
        return static_cast<size_t>(std::count(text.begin(), text.end(), '\n'));
    }

    FakePlugin mPlugin;
};

}  // namespace ogmprobe::test
