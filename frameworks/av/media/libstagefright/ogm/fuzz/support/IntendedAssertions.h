// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string_view>

/** The intended assertions: the table of docs/behaviour.md. A test compares the two. */
namespace android::ogm::fuzz {

struct IntendedAssertion {
    /** Empty: the program's name. */
    std::string_view tag;
    /** '#' matches a decimal number. */
    std::string_view text;
    /** Whether a file can cause it; the others need a mistake of the plug-in. */
    bool byFile;
};

/** Begins the texts of the plug-in's own assertions. */
inline constexpr std::string_view kPluginFolder = "frameworks/av/media/libstagefright/ogm/";

inline constexpr IntendedAssertion kIntendedAssertions[] = {
        {"OgmExtractor", "OgmExtractor:499 CHECK(!mRangeInfos.empty()) failed.", false},
        {"OgmExtractor", "OgmExtractor:717 CHECK_GE( timeUs,0ll) failed: # vs. 0", true},
        {"OgmExtractor", "OgmExtractor:735 Should not be here. ", false},
        {"OgmExtractor", "OgmExtractor:783 CHECK_GE( timeUs,0ll) failed: # vs. 0", true},
        {"OgmExtractor", "OgmExtractor:827 CHECK_EQ( bits.getBits(16),0x0B77) failed: # vs. 2935",
         false},
        {"OgmExtractor",
         "OgmExtractor:3176 CHECK(ExtractDimensionsFromVOLHeader( &data[offset], chunkSize, "
         "&width, &height)) failed.",
         false},
        {"OgmExtractor", "OgmExtractor:3322 Should not be here. ", false},
        {"avc_utils",
         "Ogmavc_utils:542 CHECK_NE( video_object_type_indication,0x21u) failed: 33 vs. 33", true},
        {"avc_utils", "Ogmavc_utils:560 CHECK(br.getBits(1)) failed.", true},
        {"avc_utils", "Ogmavc_utils:562 CHECK(br.getBits(1)) failed.", true},
        {"avc_utils", "Ogmavc_utils:564 CHECK(br.getBits(1)) failed.", true},
        {"avc_utils", "Ogmavc_utils:567 CHECK(br.getBits(1)) failed.", true},
        {"avc_utils", "Ogmavc_utils:569 CHECK(br.getBits(1)) failed.", true},
        {"avc_utils", "Ogmavc_utils:575 CHECK(br.getBits(1)) failed.", true},
        {"avc_utils", "Ogmavc_utils:577 CHECK(br.getBits(1)) failed.", true},
        {"avc_utils", "Ogmavc_utils:601 CHECK(br.getBits(1)) failed.", true},
        {"avc_utils", "Ogmavc_utils:603 CHECK(br.getBits(1)) failed.", true},
        {"avc_utils", "Ogmavc_utils:605 CHECK(br.getBits(1)) failed.", true},
        {"avc_utils", "Ogmavc_utils:573 CHECK_EQ( video_object_layer_shape,0x00u) failed: # vs. 0",
         true},
        {"avc_utils",
         "Ogmavc_utils:589 CHECK_GT( vop_time_increment_resolution,0u) failed: 0 vs. 0", true},
        {"avc_utils", "Ogmavc_utils:768 CHECK_LE( size,0x3fff) failed: # vs. 16383", true},
        {"avc_utils", "Ogmavc_utils:816 Should not be here. ", false},
        {"",
         "frameworks/av/media/libstagefright/foundation/ABitReader.cpp:56 "
         "CHECK(getBitsGraceful(n, &ret)) failed.",
         true},
};

/** The row with this tag (null: the program's name) and text; null if there is none. */
const IntendedAssertion* findIntendedAssertion(const char* tag, std::string_view text);

}  // namespace android::ogm::fuzz
