// SPDX-License-Identifier: Apache-2.0
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <optional>
#include <string>

#include "Dump.h"

namespace ogmdump {
namespace {

constexpr const char* kUsageText =
        "Usage: ogmdump [--seek SECONDS]... [--count N] FILE\n"
        "\n"
        "Prints what the device's media extractor returns for FILE, one JSON object per line: "
        "the\n"
        "formats of the tracks, then the buffers, as `ogmprobe packets --json` does.\n"
        "`ogmprobe compare FILE --device` reads this output.\n"
        "\n"
        "  --seek SECONDS  Seek there, then read on; may be repeated\n"
        "  --count N       At most N buffers of each track\n"
        "\n"
        "Exit codes: 0 done, 1 wrong usage, 2 the file cannot be opened or read, 3 no extractor\n"
        "takes it.\n";

std::optional<int64_t> microseconds(const char* text) {
    constexpr double kUsPerSecond = 1e6;
    constexpr double kMaxSeconds = 9e9;
    char* end = nullptr;
    const double seconds = std::strtod(text, &end);
    if (end == text || *end != '\0' || !(std::abs(seconds) <= kMaxSeconds)) {
        return std::nullopt;
    }
    return std::llround(seconds * kUsPerSecond);
}

std::optional<uint64_t> countFrom(const char* text) {
    char* end = nullptr;
    const unsigned long long count = std::strtoull(text, &end, 10);
    const bool isNumber = *text >= '0' && *text <= '9' && *end == '\0' && count > 0;
    return isNumber ? std::optional<uint64_t>(count) : std::nullopt;
}

/** Returns false if the value is missing or invalid. */
bool takeOption(const std::string& name, const char* value, DumpOptions& options) {
    if (value == nullptr) {
        return false;
    }
    if (name == "--seek") {
        const auto targetUs = microseconds(value);
        options.seeksUs.push_back(targetUs.value_or(0));
        return targetUs.has_value();
    }
    const auto count = countFrom(value);
    options.count = count.value_or(0);
    return count.has_value();
}

/** Returns nothing if the command line is wrong. */
std::optional<DumpOptions> parse(int argc, char** argv) {
    DumpOptions options;
    for (int i = 1; i < argc; ++i) {
        const std::string argument = argv[i];
        if (argument == "--seek" || argument == "--count") {
            if (!takeOption(argument, argv[++i], options)) {
                return std::nullopt;
            }
        } else if (!options.path.empty() || argument.empty() || argument[0] == '-') {
            return std::nullopt;
        } else {
            options.path = argument;
        }
    }
    return options.path.empty() ? std::nullopt : std::optional(options);
}

int run(int argc, char** argv) {
    if (argc == 2 && std::strcmp(argv[1], "--help") == 0) {
        std::fputs(kUsageText, stdout);
        return kDone;
    }
    const auto options = parse(argc, argv);
    if (!options) {
        std::fputs(kUsageText, stderr);
        return kUsage;
    }
    const ExitCode code = dump(*options, stdout);
    if (std::fflush(stdout) != 0 || std::ferror(stdout) != 0) {
        std::perror("ogmdump: cannot write");
        return kFile;
    }
    return code;
}

}  // namespace
}  // namespace ogmdump

int main(int argc, char** argv) {
    return ogmdump::run(argc, argv);
}
