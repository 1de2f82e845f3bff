// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>

#include "check/CheckedFile.h"
#include "check/Decoder.h"
#include "commands/Session.h"

namespace ogmprobe::check {

/** Plays the file once, in a separate process, and judges it. Failures are part of the result. */
CheckedFile checkFile(const std::string& path, const DecoderList& decoders, Session& session);

/** The reason for a file that cannot be read at all. */
inline constexpr const char* kCannotRead = "cannot-read";

/** Throws `ProbeError` if the plug-in cannot be used with any file. */
void requirePlugin(const CheckedFile& file);

/** Returns a result for a file without a verdict. */
CheckedFile uncheckedFile(const std::string& path, const char* reason, ExitCode code,
                          const std::string& message);

}  // namespace ogmprobe::check
