// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>

#include "check/CheckedFile.h"
#include "check/Summary.h"

namespace ogmprobe::check {

/** A page about many files that needs nothing from elsewhere; its table can be sorted. */
class HtmlReport {
  public:
    /** Of a file that is added. Both are empty where none was asked for. */
    struct Timeline {
        /** Its path from the page's folder. */
        std::string path = {};
        /** Why it was not drawn. */
        std::string failure = {};
    };

    void add(const CheckedFile& file, const Timeline& timeline);

    std::string document(const Summary& summary, const std::string& decoders) const;

  private:
    std::string mRows;
};

/** The command that draws a file's timeline, as a shell takes it. */
std::string timelineCommand(const std::string& path);

}  // namespace ogmprobe::check
