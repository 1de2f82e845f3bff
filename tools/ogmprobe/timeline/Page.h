// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>

#include "Chart.h"

namespace ogmprobe::timeline {

/** An HTML page that needs nothing from elsewhere: tables, the drawing, and its script. */
std::string pageDocument(const Chart& chart);

/** What the page's script knows of the file; both may stand in a script element. */
struct PageData {
    /** JSON: what there is, and the sizes of the columns. */
    std::string outline;
    /** The packed columns (Packing.h). */
    std::string columns;
};
PageData pageData(const Chart& chart);

/** Tables for people, as HTML. */
std::string trackTable(const Chart& chart);
std::string readTable(const Chart& chart);

}  // namespace ogmprobe::timeline
