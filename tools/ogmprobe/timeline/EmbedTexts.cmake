# SPDX-License-Identifier: Apache-2.0
# Writes the C++ source OUTPUT, which defines constants that HEADER declares in NAMESPACE. TEXTS is a
# list with commas of constants and the files in FOLDER whose texts they are, as kPage:page.html; several
# files, as kScript:one.js+two.js, are put together.
set(source "// SPDX-License-Identifier: Apache-2.0\n#include \"${HEADER}\"\n")
string(APPEND source "\nnamespace ${NAMESPACE} {\n\n")
string(REPLACE "," ";" texts "${TEXTS}")
foreach(pair IN LISTS texts)
    string(REPLACE ":" ";" pair "${pair}")
    list(GET pair 0 name)
    list(GET pair 1 files)
    string(REPLACE "+" ";" files "${files}")
    set(text "")
    foreach(file IN LISTS files)
        file(READ "${FOLDER}/${file}" content)
        string(APPEND text "${content}")
    endforeach()
    string(APPEND source "const std::string_view ${name} = R\"embedded(${text})embedded\";\n")
endforeach()
string(APPEND source "\n}  // namespace ${NAMESPACE}\n")
file(WRITE "${OUTPUT}" "${source}")
