# The Debian package, made by CPack: scripts/package.
if(NOT CMAKE_SYSTEM_NAME STREQUAL "Linux")
    return()
endif()

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME telvo)
set(CPACK_PACKAGE_CONTACT "TELVO maintainers <maintainers@telvo.example>")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
    OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_RELEASE 1)
set(CPACK_DEBIAN_PACKAGE_SECTION science)
set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
if(TELVO_DESKTOP)
    # A font with a fixed-pitch face for the reports, and one at all for the pictures.
    set(CPACK_DEBIAN_PACKAGE_DEPENDS fonts-dejavu-core)
    set(CPACK_DEBIAN_PACKAGE_RECOMMENDS xdg-utils)
endif()
set(CPACK_DEBIAN_PACKAGE_DESCRIPTION
"TELVO designs room-and-pillar retreat mining panels in coal. A mining engineer
describes one panel: depth of cover, entries and crosscuts, coal strength, the
gobs around it, the barriers and the rows of pillars that are left. TELVO
computes the loads on pillars, barriers and their remnants during development
and retreat, their strengths and stability factors, and writes a report whose
warnings compare the panel with a case-history data base of retreat mining.
.
The package holds the desktop program telvo, the console program telvo-cli,
example cases, help and manuals.")

# What the archive wants in a package's folder of documents.
set(doc_dir ${CMAKE_INSTALL_DATADIR}/doc/telvo)
string(TIMESTAMP changelog_date "%a, %d %b %Y %H:%M:%S +0000" UTC)
configure_file(${CMAKE_CURRENT_LIST_DIR}/changelog.in ${CMAKE_CURRENT_BINARY_DIR}/changelog @ONLY)
if(GZIP)
    foreach(pair ${CMAKE_CURRENT_BINARY_DIR}/changelog:changelog.Debian
                 ${PROJECT_SOURCE_DIR}/CHANGELOG.md:changelog)
        string(REGEX MATCH "^(.*):(.*)$" pair ${pair})
        set(packed ${CMAKE_CURRENT_BINARY_DIR}/${CMAKE_MATCH_2}.gz)
        execute_process(COMMAND ${GZIP} -9nc ${CMAKE_MATCH_1} OUTPUT_FILE ${packed}
                        COMMAND_ERROR_IS_FATAL ANY)
        set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${CMAKE_MATCH_1})
        install(FILES ${packed} DESTINATION ${doc_dir})
    endforeach()
endif()
install(FILES ${CMAKE_CURRENT_LIST_DIR}/copyright DESTINATION ${doc_dir})
include(CPack)
