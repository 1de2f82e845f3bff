# SPDX-License-Identifier: Apache-2.0
# Installs ogmprobe with the plug-in and the platform libraries that both need. The libraries have
# the names of a device's, so they go into a separate folder. The layout can be moved as a whole:
# everything finds the rest relative to itself.
include(GNUInstallDirs)

# One folder deeper than those that a package must register with the dynamic linker.
set(private lib/ogmprobe/device)

set_target_properties(ogmprobe PROPERTIES INSTALL_RPATH "$ORIGIN/../${private}")
install(TARGETS ogmprobe DESTINATION bin COMPONENT ogmprobe)

install(TARGETS ogmextractor DESTINATION ${private}/extractors COMPONENT ogmprobe)

foreach(library IN ITEMS log cutils mediandk mediandk_zor)
    set_target_properties(platform_${library} PROPERTIES INSTALL_RPATH "$ORIGIN")
    install(TARGETS platform_${library} DESTINATION ${private} COMPONENT ogmprobe)
endforeach()

set(manual_docs ${PROJECT_SOURCE_DIR}/tools/ogmprobe/docs)

# As Debian requires: the same bytes for the same text.
function(install_compressed file name destination)
    set(compressed ${PROJECT_BINARY_DIR}/compressed/${name}.gz)
    file(MAKE_DIRECTORY ${PROJECT_BINARY_DIR}/compressed)
    execute_process(COMMAND gzip -9 --no-name --stdout ${file}
        OUTPUT_FILE ${compressed} COMMAND_ERROR_IS_FATAL ANY)
    set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${file})
    install(FILES ${compressed} DESTINATION ${destination} COMPONENT ogmprobe)
endfunction()

install_compressed(${manual_docs}/ogmprobe.1 ogmprobe.1 share/man/man1)
install_compressed(${manual_docs}/debian/changelog changelog share/doc/ogmprobe)
install(FILES ${manual_docs}/ogmprobe.bash
    DESTINATION share/bash-completion/completions RENAME ogmprobe COMPONENT ogmprobe)
install(FILES ${manual_docs}/_ogmprobe DESTINATION share/zsh/vendor-completions COMPONENT ogmprobe)
install(FILES ${manual_docs}/ogmprobe.fish
    DESTINATION share/fish/vendor_completions.d COMPONENT ogmprobe)
install(FILES ${PROJECT_SOURCE_DIR}/docs/ogmprobe.md ${PROJECT_SOURCE_DIR}/docs/behaviour.md
    ${PROJECT_SOURCE_DIR}/docs/timeline.png ${PROJECT_SOURCE_DIR}/tools/ogmprobe/JSON.md
    DESTINATION share/doc/ogmprobe COMPONENT ogmprobe)
install(DIRECTORY ${PROJECT_SOURCE_DIR}/tools/ogmprobe/schema
    DESTINATION share/doc/ogmprobe COMPONENT ogmprobe FILES_MATCHING PATTERN "*.json")
install(FILES ${manual_docs}/debian/copyright DESTINATION share/doc/ogmprobe COMPONENT ogmprobe)
install(FILES ${manual_docs}/debian/lintian-overrides
    DESTINATION share/lintian/overrides RENAME ogmprobe COMPONENT ogmprobe)

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME ogmprobe)
set(CPACK_PACKAGE_CONTACT "The OGM extractor's maintainers")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY
    "shows what Android's media framework gets from an OGM file")
set(CPACK_PACKAGE_DESCRIPTION
    "ogmprobe plays the framework's part for a media-extractor plug-in of\n\
Android 13: it lists tracks and buffers, draws them over time, says why\n\
tracks are missing and durations are odd, compares files and plug-ins,\n\
and writes the elementary streams into files.")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_COMPONENTS_ALL ogmprobe)
set(CPACK_COMPONENTS_GROUPING ALL_COMPONENTS_IN_ONE)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION video)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS ${CMAKE_LIBRARY_OUTPUT_DIRECTORY})
include(CPack)
