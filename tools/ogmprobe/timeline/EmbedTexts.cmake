# SPDX-License-Identifier: Apache-2.0
# Writes the C++ source OUTPUT, which holds the files in FOLDER as the constants of PageTexts.h.
set(source "// SPDX-License-Identifier: Apache-2.0\n#include \"PageTexts.h\"\n")
string(APPEND source "\nnamespace ogmprobe::timeline {\n\n")
foreach(pair IN ITEMS kPage:page.html kPageSheet:page.css kDrawingSheet:drawing.css
        kPageScript:page.js)
    string(REPLACE ":" ";" pair "${pair}")
    list(GET pair 0 name)
    list(GET pair 1 file)
    file(READ "${FOLDER}/${file}" text)
    string(APPEND source "const std::string_view ${name} = R\"embedded(${text})embedded\";\n")
endforeach()
string(APPEND source "\n}  // namespace ogmprobe::timeline\n")
file(WRITE "${OUTPUT}" "${source}")
