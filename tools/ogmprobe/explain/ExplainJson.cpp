// SPDX-License-Identifier: Apache-2.0
#include "explain/ExplainText.h"
#include "text/Json.h"

namespace ogmprobe {
namespace {

using nlohmann::ordered_json;

ordered_json toJson(const LoggedLine& line) {
    return {{"priority", line.priority},
            {"tag", line.tag},
            {"text", line.text},
            {"function", functionName(line.function)},
            {"offset", orNull(line.offset)},
            {"count", line.count}};
}

ordered_json linesAt(const Explanation& explanation, uint64_t offset, uint64_t end) {
    auto lines = ordered_json::array();
    for (const LoggedLine* line : explanation.trace().linesAt(offset, end)) {
        lines.push_back(toJson(*line));
    }
    return lines;
}

ordered_json toJson(const Explanation& explanation, const OggPage& page) {
    const std::string reason = whyNoTrack(explanation, page);
    return {{"offset", page.offset},
            {"size", page.end() - page.offset},
            {"version", page.version},
            {"flags", page.flags},
            {"granule", static_cast<int64_t>(page.granule)},
            {"time_us", orNull(explanation.file().timeUs(page))},
            {"serial", page.serial},
            {"sequence", page.sequence},
            {"packets", page.packets},
            {"missing_bytes", page.missingBytes},
            {"checksum_right", page.checksumRight},
            {"track", orNull(explanation.trace().trackOf(page.serial))},
            {"why_no_track", reason.empty() ? ordered_json(nullptr) : ordered_json(reason)},
            {"log", linesAt(explanation, page.offset, page.end())}};
}

ordered_json toJson(const Explanation& explanation, const OggStream& stream) {
    const OggFile& file = explanation.file();
    const StreamHeader* header = file.headerOf(stream.serial);
    uint64_t packets = 0;
    for (const size_t index : stream.dataPages) {
        packets += file.pages()[index].packets;
    }
    const auto track = explanation.trace().trackOf(stream.serial);
    const std::string reason = explanation.whyNoTrack(stream.serial);
    const auto account = explanation.accounts().find(stream.serial);
    ordered_json played = nullptr;
    if (track) {
        played = explanation.trace().tracks().at(*track).buffers.size();
    }
    return {{"serial", stream.serial},
            {"name", header != nullptr ? ordered_json(header->name()) : ordered_json(nullptr)},
            {"header_offset", stream.announcement
                                      ? ordered_json(file.pages()[*stream.announcement].offset)
                                      : ordered_json(nullptr)},
            {"pages", stream.dataPages.size()},
            {"packets", packets},
            {"track", orNull(track)},
            {"why_no_track", reason.empty() ? ordered_json(nullptr) : ordered_json(reason)},
            {"buffers", played},
            {"ledger", account == explanation.accounts().end()
                               ? ordered_json(nullptr)
                               : toJson(explanation, account->second.ledger)}};
}

}  // namespace

ordered_json toJson(const Finding& finding) {
    return {{"id", finding.id},
            {"text", finding.text},
            {"usual", finding.usual},
            {"track", orNull(finding.track)},
            {"serial", orNull(finding.serial)},
            {"offset", orNull(finding.offset)},
            {"bytes", orNull(finding.bytes)},
            {"time_us", orNull(finding.timeUs)},
            {"until_us", orNull(finding.untilUs)},
            {"log", finding.line ? toJson(*finding.line) : ordered_json(nullptr)}};
}

ordered_json streamsJson(const Explanation& explanation) {
    auto streams = ordered_json::array();
    for (const auto& [serial, stream] : explanation.file().streams()) {
        streams.push_back(toJson(explanation, stream));
    }
    return streams;
}

ordered_json pagesJson(const Explanation& explanation) {
    auto pages = ordered_json::array();
    for (const OggPage& page : explanation.file().pages()) {
        pages.push_back(toJson(explanation, page));
    }
    return pages;
}

}  // namespace ogmprobe
