// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "ExitCode.h"
#include "commands/Session.h"
#include "options/Options.h"

namespace ogmprobe {

// Each command reports failures and returns their exit code. They throw `OutputError`.

ExitCode runInfo(const InfoOptions& options, Session& session);
ExitCode runPackets(const PacketsOptions& options, Session& session);
ExitCode runSeekTest(const SeekTestOptions& options, Session& session);
ExitCode runExtract(const ExtractOptions& options, Session& session);
ExitCode runTimeline(const TimelineOptions& options, Session& session);
ExitCode runExplain(const ExplainOptions& options, Session& session);
ExitCode runSync(const SyncOptions& options, Session& session);
ExitCode runCompare(const CompareOptions& options, Session& session);
ExitCode runCheck(const CheckOptions& options, Session& session);

}  // namespace ogmprobe
