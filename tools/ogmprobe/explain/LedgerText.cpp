// SPDX-License-Identifier: Apache-2.0
#include <fmt/core.h>

#include "explain/ExplainText.h"
#include "text/Json.h"
#include "text/NumberText.h"

namespace ogmprobe {
namespace {

using nlohmann::ordered_json;

std::string nameOf(const Explanation& explanation, const Ledger& ledger) {
    const StreamHeader* header = explanation.file().headerOf(ledger.serial);
    const std::string name = header != nullptr ? header->name() : "unknown";
    return ledger.track ? fmt::format("track {} ({})", *ledger.track, name)
                        : fmt::format("no track ({}, serial number {})", name, ledger.serial);
}

std::string briefOf(const Explanation& explanation, const Ledger& ledger, const Loss& loss) {
    if (loss.reason != LossReason::kNoTrack) {
        return textOf(loss.reason).brief;
    }
    const std::string reason = explanation.whyNoTrack(ledger.serial);
    return reason.empty() ? "not opened" : reason;
}

std::string lineOf(const Explanation& explanation, const Ledger& ledger) {
    std::string text = fmt::format("{}: {} in the file = {} returned", nameOf(explanation, ledger),
                                   counted(ledger.inFile, ledger.noun()), ledger.returned);
    if (ledger.changed > 0) {
        text += fmt::format(" ({} changed)", ledger.changed);
    }
    for (const Loss& loss : ledger.losses) {
        text += fmt::format(" + {} {}", loss.count, briefOf(explanation, ledger, loss));
    }
    if (ledger.repeated + ledger.foreign > 0) {
        const uint64_t more = ledger.repeated + ledger.foreign;
        text += fmt::format("; besides, {} {} returned that the file does not hold there",
                            counted(more, "buffer"), more == 1 ? "is" : "are");
    }
    return text + "\n";
}

ordered_json toJson(const Explanation& explanation, const Ledger& ledger, const Loss& loss) {
    return {{"reason", textOf(loss.reason).id},
            {"text", briefOf(explanation, ledger, loss)},
            {"count", loss.count},
            {"offset", loss.offset},
            {"last_offset", loss.lastOffset},
            {"time_us", orNull(loss.timeUs)},
            {"until_us", orNull(loss.lastTimeUs)}};
}

}  // namespace

std::string ledgersText(const Explanation& explanation) {
    std::string text;
    for (const auto& [serial, account] : explanation.accounts()) {
        text += lineOf(explanation, account.ledger);
    }
    return text;
}

ordered_json toJson(const Explanation& explanation, const Ledger& ledger) {
    auto losses = ordered_json::array();
    for (const Loss& loss : ledger.losses) {
        losses.push_back(toJson(explanation, ledger, loss));
    }
    return {{"unit", ledger.noun()},         {"in_file", ledger.inFile},
            {"handed_out", ledger.returned}, {"changed", ledger.changed},
            {"losses", std::move(losses)},   {"unexplained", ledger.unexplained()},
            {"repeated", ledger.repeated},   {"foreign", ledger.foreign}};
}

}  // namespace ogmprobe
