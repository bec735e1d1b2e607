# `cpack` makes one Debian package of everything that is installed: program, libraries, headers. scripts/package calls it.

set(documents ${CMAKE_INSTALL_DATADIR}/doc/qtrace)

# The libraries of others that are compiled in want their notices to come along.
file(READ copyright text)
foreach(library libcli11-dev librapidxml-dev nlohmann-json3-dev libcpp-httplib-dev libjs-leaflet)
  set(notice /usr/share/doc/${library}/copyright)
  if(EXISTS ${notice})
    file(READ ${notice} notice)
    string(APPEND text "\n\n---- compiled in, from the package ${library} ----\n\n${notice}")
  endif()
endforeach()
file(WRITE ${CMAKE_CURRENT_BINARY_DIR}/copyright "${text}")
install(FILES ${CMAKE_CURRENT_BINARY_DIR}/copyright DESTINATION ${documents})

# A changelog in the form of Debian's, on the day of the last change.
execute_process(COMMAND git log -1 --format=%cD -- CHANGELOG.md WORKING_DIRECTORY ${PROJECT_SOURCE_DIR}
  OUTPUT_VARIABLE day OUTPUT_STRIP_TRAILING_WHITESPACE ERROR_QUIET)
if(NOT day)  # the sources without their history
  file(TIMESTAMP ${PROJECT_SOURCE_DIR}/CHANGELOG.md day "%a, %d %b %Y %H:%M:%S +0000" UTC)
endif()
set(maintainer "Qtrace <qtrace@localhost>")
file(WRITE ${CMAKE_CURRENT_BINARY_DIR}/changelog
  "qtrace (${PROJECT_VERSION}) unstable; urgency=medium\n\n  * CHANGELOG.md beside this file tells what is new.\n\n -- ${maintainer}  ${day}\n")
execute_process(COMMAND ${QTRACE_GZIP} -9nkf ${CMAKE_CURRENT_BINARY_DIR}/changelog)
set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/CHANGELOG.md copyright)
install(FILES ${CMAKE_CURRENT_BINARY_DIR}/changelog.gz ${PROJECT_SOURCE_DIR}/CHANGELOG.md
  DESTINATION ${documents})

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME qtrace)
set(CPACK_PACKAGE_VENDOR Qtrace)
set(CPACK_PACKAGE_CONTACT ${maintainer})
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_VERBATIM_VARIABLES ON)
set(CPACK_PRE_BUILD_SCRIPTS ${CMAKE_CURRENT_SOURCE_DIR}/tidy_files.cmake)
set(CPACK_POST_BUILD_SCRIPTS ${CMAKE_CURRENT_SOURCE_DIR}/drop_scripts.cmake)

set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION utils)
set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "records GPS tracks so that nothing is lost, and keeps them")
set(CPACK_DEBIAN_PACKAGE_DESCRIPTION "qtrace records the route of a GPS receiver fix by fix into a file that
survives a power cut or a kill, keeps a library of the recorded tracks, and
exchanges them with other programs as GPX.

The package holds the program, the library underneath and what is needed
to build programs with it.")
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS ON)
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS_POLICY ">=")
set(CPACK_DEBIAN_PACKAGE_SUGGESTS "bash-completion, gpsd, libjemalloc-dev")
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
set(CPACK_DEBIAN_PACKAGE_CONTROL_EXTRA ${CMAKE_CURRENT_SOURCE_DIR}/triggers)
# Our own library, which no package has brought here.
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS ${PROJECT_BINARY_DIR})
include(CPack)
