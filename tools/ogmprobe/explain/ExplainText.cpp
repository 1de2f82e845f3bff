// SPDX-License-Identifier: Apache-2.0
#include "explain/ExplainText.h"

#include <fmt/core.h>

#include <algorithm>
#include <vector>

#include "text/LogText.h"
#include "text/NumberText.h"
#include "text/TimeText.h"
#include "text/VisibleText.h"

namespace ogmprobe {
namespace {

std::string placeText(const Finding& finding) {
    std::string text = finding.offset  ? fmt::format("offset {}", *finding.offset)
                       : finding.track ? fmt::format("track {}", *finding.track)
                                       : "the whole file";
    if (finding.timeUs && finding.untilUs && *finding.timeUs != *finding.untilUs) {
        // Streams are interleaved, so the later place may have the smaller time.
        const auto [from, until] = std::minmax(*finding.timeUs, *finding.untilUs);
        text += fmt::format(", {} to {} s", secondsText(from), secondsText(until));
    } else if (finding.timeUs) {
        text += fmt::format(", at {} s", secondsText(*finding.timeUs));
    }
    return text;
}

std::string findingText(const Finding& finding, bool color) {
    std::string text =
            fmt::format("{}\n    {}\n", emphasised(placeText(finding), color), finding.text);
    if (finding.line) {
        text += fmt::format("    log: {}\n", lineText(*finding.line));
    }
    return text;
}

std::string flagsText(const OggPage& page) {
    return fmt::format("{}{}{}", page.continues() ? 'c' : '-', page.beginsStream() ? 'b' : '-',
                       page.endsStream() ? 'e' : '-');
}

std::string trackText(const Explanation& explanation, const OggPage& page) {
    const auto track = explanation.trace().trackOf(page.serial);
    return track ? fmt::format("track {}", *track) : "no track: " + whyNoTrack(explanation, page);
}

std::string streamName(const OggFile& file, const OggPage& page) {
    const StreamHeader* header = file.headerOf(page.serial);
    return header != nullptr ? header->name() : "?";
}

std::string remarks(const OggPage& page) {
    std::string text;
    const auto remark = [&text](bool applies, const std::string& words) {
        text += applies ? ", " + words : "";
    };
    remark(!page.isReadable(), "header damaged");
    remark(page.isReadable() && !page.checksumRight, "wrong checksum");
    remark(page.missingBytes > 0, counted(page.missingBytes, "byte") + " missing");
    remark(page.beginsWithComment, "comment header");
    return text;
}

/** Writes pages, junk and log lines in the order of their offsets. */
class PageList {
  public:
    PageList(const Explanation& explanation, Output& output)
        : mExplanation(explanation), mOutput(output) {
        for (const LoggedLine& line : explanation.trace().lines()) {
            if (line.offset) {
                mLines.emplace(*line.offset, &line);
            }
        }
    }

    void write(bool color) {
        mOutput.write(emphasised(fmt::format("{:>10}  {:>6}  {:<5}  {:>6}  {:>12}  {:>13}  {:>10}  "
                                             "{:>7}  {}",
                                             "offset", "size", "flags", "number", "granule", "time",
                                             "serial", "packets", "stream"),
                                 color) +
                      "\n");
        writeLines(0);
        auto junk = mExplanation.file().junk().begin();
        for (const OggPage& page : mExplanation.file().pages()) {
            for (; junk != mExplanation.file().junk().end() && junk->offset < page.offset; ++junk) {
                write(*junk);
            }
            write(page);
        }
        for (; junk != mExplanation.file().junk().end(); ++junk) {
            write(*junk);
        }
        writeLines(INT64_MAX);
        for (const LoggedLine& line : mExplanation.trace().lines()) {
            if (!line.offset) {
                write(line);
            }
        }
    }

  private:
    void write(const JunkRange& junk) {
        mOutput.write(
                fmt::format("{:>10}  {:>6}  junk: no page begins here\n", junk.offset, junk.size));
        writeLines(static_cast<int64_t>(junk.end()));
    }

    void write(const OggPage& page) {
        mOutput.write(fmt::format(
                "{:>10}  {:>6}  {:<5}  {:>6}  {:>12}  {:>13}  {:>10}  {:>7}  {}, {}{}\n",
                page.offset, page.end() - page.offset, flagsText(page), page.sequence,
                static_cast<int64_t>(page.granule), secondsText(mExplanation.file().timeUs(page)),
                page.serial, page.packets, streamName(mExplanation.file(), page),
                trackText(mExplanation, page), remarks(page)));
        writeLines(static_cast<int64_t>(page.end()));
    }

    /** Writes the lines that were logged before the place. */
    void writeLines(int64_t end) {
        for (; !mLines.empty() && mLines.begin()->first < end; mLines.erase(mLines.begin())) {
            write(*mLines.begin()->second);
        }
    }

    void write(const LoggedLine& line) {
        mOutput.write(
                fmt::format("{:>10}  {} ({})\n", "|", lineText(line), functionName(line.function)));
    }

    const Explanation& mExplanation;
    Output& mOutput;
    std::multimap<int64_t, const LoggedLine*> mLines;
};

}  // namespace

std::string lineText(const LoggedLine& line) {
    return visible(logText(line.priority, line.tag, line.text)) +
           (line.count > 1 ? fmt::format("  ({} times)", line.count) : "");
}

std::string whyNoTrack(const Explanation& explanation, const OggPage& page) {
    if (explanation.trace().trackOf(page.serial)) {
        return "";
    }
    if (!page.isReadable()) {
        return "page header damaged";
    }
    const std::string reason = explanation.whyNoTrack(page.serial);
    return reason.empty() ? "not opened" : reason;
}

std::string findingsText(const Explanation& explanation, const ExplainOptions& options,
                         bool color) {
    std::string text;
    size_t left = 0;
    for (const Finding& finding : explanation.findings()) {
        if (finding.usual && !options.verbose) {
            ++left;
        } else {
            text += findingText(finding, color);
        }
    }
    if (text.empty()) {
        // Only the ledgers prove it.
        text = explanation.accounts().empty() ? "nothing found to explain, but no packets counted\n"
                                              : "nothing to explain\n";
    }
    if (left > 0) {
        text += fmt::format("({} on every such file: --verbose)\n", counted(left, "note"));
    }
    return text;
}

void writePages(const Explanation& explanation, bool color, Output& output) {
    PageList(explanation, output).write(color);
}

}  // namespace ogmprobe
