// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string_view>

/** The source files of the page, which the build embeds as constants. */
namespace ogmprobe::timeline {

/** head.html: the beginning of each page, with names for the parts to fill in. */
extern const std::string_view kHead;
/** page.html: the rest of a timeline's page. */
extern const std::string_view kPage;
/** colours.css: the colours of pages and drawings, in light and dark. */
extern const std::string_view kColours;
/** common.css: what all pages have in common. */
extern const std::string_view kCommonSheet;
/** page.css: how the page around the drawing looks. */
extern const std::string_view kPageSheet;
/** drawing.css: how the drawing looks, in a page and as a separate document. */
extern const std::string_view kDrawingSheet;
/** script/: draws the lanes and handles mouse, fingers and keys. */
extern const std::string_view kPageScript;

}  // namespace ogmprobe::timeline
