// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>

#include "commands/Report.h"
#include "commands/Session.h"
#include "explain/PluginTrace.h"
#include "records/RecordSink.h"

namespace ogmprobe {

/** Plays the file to its end, with all its log lines. Throws `ProbeError`. */
void playWithLines(const std::string& path, Session& session, const RecordSink& handler);

/**
 * Plays the file to its end and collects in `trace` what the plug-in does with it. Failures are
 * also reported. The sink, if there is one, gets all records. Throws `ProbeError`.
 */
void playTraced(const std::string& path, Session& session, Report& report, PluginTrace& trace,
                const RecordSink& also = {});

}  // namespace ogmprobe
