// SPDX-License-Identifier: Apache-2.0
#include "explain/OggScanner.h"

#include <gtest/gtest.h>

#include <string>

#include "ExitCode.h"
#include "NextDescriptor.h"
#include "TemporaryFolder.h"

namespace ogmprobe {
namespace {

TEST(OggScanner, SaysWhyAFileCannotBeRead) {
    const test::TemporaryFolder folder;
    const std::string path = folder.write("file", "OggS and more");
    const test::NextDescriptor descriptor;
    OggScanner scanner(path);
    descriptor.makeUnreadable();
    try {
        scanner.findPage(0);
        FAIL() << "nothing is thrown";
    } catch (const ProbeError& error) {
        EXPECT_EQ(error.code(), ExitCode::kFile);
        EXPECT_STREQ(error.what(), "cannot read: Bad file descriptor");
    }
}

}  // namespace
}  // namespace ogmprobe
