// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <array>
#include <cstddef>
#include <map>
#include <nlohmann/json_fwd.hpp>
#include <string>
#include <utility>
#include <vector>

#include "check/CheckedFile.h"

namespace ogmprobe::check {

/** Counts files by their verdicts, and by the reasons for these. */
class Summary {
  public:
    struct Entry {
        std::string id;
        std::string subject;
        Verdict verdict = Verdict::kPlays;
        size_t files = 0;

        /** "frames lost: AC-3 at 44100 Hz" */
        std::string title() const;
    };

    void add(const CheckedFile& file);

    size_t files() const { return mFiles; }
    size_t filesWith(Verdict verdict) const { return mVerdicts[static_cast<size_t>(verdict)]; }
    /** Returns the entries, the worst and most frequent first. */
    std::vector<Entry> entries() const;

  private:
    size_t mFiles = 0;
    std::array<size_t, static_cast<size_t>(lastOf(Verdict{})) + 1> mVerdicts{};
    std::map<std::pair<std::string, std::string>, Entry> mEntries;
};

/** "612 files: 600 play, 8 play with faults, 4 do not play" */
std::string countsText(const Summary& summary);
/** Returns the counts and a line for each reason. */
std::string summaryText(const Summary& summary, bool color);
nlohmann::ordered_json toJson(const Summary& summary);

}  // namespace ogmprobe::check
