// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string_view>

/** The source files of the page, which the build turns into constants. */
namespace ogmprobe::timeline {

/** page.html: the page, with names for what is filled in. */
extern const std::string_view kPage;
/** page.css: how the page around the drawing looks. */
extern const std::string_view kPageSheet;
/** drawing.css: how the drawing looks, in a page and as a document of its own. */
extern const std::string_view kDrawingSheet;
/** script/: what draws the lanes and answers mouse, fingers and keys. */
extern const std::string_view kPageScript;

}  // namespace ogmprobe::timeline
