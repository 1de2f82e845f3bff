// SPDX-License-Identifier: Apache-2.0
#include <unistd.h>

#include <csignal>
#include <exception>
#include <iostream>
#include <sstream>
#include <variant>

#include "ExitCode.h"
#include "commands/Commands.h"
#include "commands/Session.h"
#include "console/Console.h"
#include "console/Output.h"
#include "files/LeftoverFiles.h"
#include "options/Arguments.h"

namespace ogmprobe {
namespace {

struct RunCommand {
    Session& session;

    ExitCode operator()(const InfoOptions& options) const { return runInfo(options, session); }
    ExitCode operator()(const PacketsOptions& options) const {
        return runPackets(options, session);
    }
    ExitCode operator()(const SeekTestOptions& options) const {
        return runSeekTest(options, session);
    }
    ExitCode operator()(const ExtractOptions& options) const {
        return runExtract(options, session);
    }
    ExitCode operator()(const TimelineOptions& options) const {
        return runTimeline(options, session);
    }
    ExitCode operator()(const ExplainOptions& options) const {
        return runExplain(options, session);
    }
    ExitCode operator()(const SyncOptions& options) const { return runSync(options, session); }
    ExitCode operator()(const CompareOptions& options) const {
        return runCompare(options, session);
    }
    ExitCode operator()(const CheckOptions& options) const { return runCheck(options, session); }
};

ExitCode runCommand(const Options& options, Console& console, Output& output) {
    Session session{options.global, console, output};
    const ExitCode code = std::visit(RunCommand{session}, options.command);
    output.flush();
    return code;
}

ExitCode run(int argc, const char* const* argv) {
    Output output(STDOUT_FILENO);
    std::ostringstream help;
    const auto parsed = parseArguments(argc, argv, help, std::cerr);
    const Options* options = std::get_if<Options>(&parsed);
    Console console(options != nullptr ? options->global.color : ColorMode::kAuto,
                    options != nullptr && options->global.quiet);
    try {
        if (options != nullptr) {
            return runCommand(*options, console, output);
        }
        output.write(help.str());
        output.flush();
        return std::get<ExitCode>(parsed);
    } catch (const OutputClosed&) {
        return ExitCode::kDone;
    } catch (const ProbeError& error) {
        console.error("", error.what());
        return error.code();
    } catch (const std::exception& error) {
        console.error("", error.what());
        return ExitCode::kFile;
    }
}

}  // namespace
}  // namespace ogmprobe

int main(int argc, char** argv) {
    // A closed pipe and a limit on file sizes are reported by the write itself.
    std::signal(SIGPIPE, SIG_IGN);
    std::signal(SIGXFSZ, SIG_IGN);
    ogmprobe::removeLeftoverFilesOnSignals();
    return static_cast<int>(ogmprobe::run(argc, argv));
}
