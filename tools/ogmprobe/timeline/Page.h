// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>

#include "Chart.h"

namespace ogmprobe::timeline {

/** Returns a self-contained HTML page: tables, the drawing, and its script. */
std::string pageDocument(const Chart& chart);

/** The data of the page's script; both texts are safe in a script element. */
struct PageData {
    /** JSON: a description of the file, and the sizes of the columns. */
    std::string outline;
    /** The packed columns (Packing.h). */
    std::string columns;
};
PageData pageData(const Chart& chart);

/** Tables for people, as HTML. */
std::string trackTable(const Chart& chart);
std::string readTable(const Chart& chart);

}  // namespace ogmprobe::timeline
