// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>

#include "check/CheckedFile.h"
#include "check/Summary.h"

namespace ogmprobe::check {

/** A self-contained page about many files; its table can be sorted. */
class HtmlReport {
  public:
    /** The timeline of a file. Both members are empty if none was requested. */
    struct Timeline {
        /** Its path, relative to the page's folder. */
        std::string path = {};
        /** Why it could not be drawn. */
        std::string failure = {};
    };

    void add(const CheckedFile& file, const Timeline& timeline);

    std::string document(const Summary& summary, const std::string& decoders) const;

  private:
    std::string mRows;
};

/** The shell command that draws a file's timeline. */
std::string timelineCommand(const std::string& path);

}  // namespace ogmprobe::check
