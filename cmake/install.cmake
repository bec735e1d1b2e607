# What a host needs: headers, both libraries, the CMake package and the pkg-config file.
include(CMakePackageConfigHelpers)

set(public_headers
  qtrace.h
  library/track_manager.h library/track_proxy.h
  record/log_track.h record/settings.h
  track/geodesy.h track/itrack.h track/point.h track/track.h
  util/export.h util/je_allocator.h util/paths.h util/text.h util/time.h
  platform/device.h platform/system_time.h)
# As installed they include each other by paths relative to themselves: a host may have a util/paths.h of its own.
foreach(header ${public_headers})
  get_filename_component(folder ${header} DIRECTORY)
  file(READ ${header} text)
  if(folder)
    string(REGEX REPLACE "#include \"(library|record|track|util|platform)/" "#include \"../\\1/" text "${text}")
  endif()
  file(CONFIGURE OUTPUT ${PROJECT_BINARY_DIR}/include/${header} CONTENT "${text}" @ONLY NEWLINE_STYLE UNIX)
  set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${header})
  install(FILES ${PROJECT_BINARY_DIR}/include/${header} DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/qtrace/${folder})
endforeach()

install(TARGETS qtrace qtrace_static EXPORT qtrace-targets
  LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}
  ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR}
  RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR}
  INCLUDES DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/qtrace)
install(EXPORT qtrace-targets NAMESPACE qtrace:: DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/qtrace)
write_basic_package_version_file(${PROJECT_BINARY_DIR}/qtrace-config-version.cmake COMPATIBILITY SameMinorVersion)
install(FILES cmake/qtrace-config.cmake ${PROJECT_BINARY_DIR}/qtrace-config-version.cmake
  DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/qtrace)

# Relative to where the file lies, so that an installed tree may be moved.
file(RELATIVE_PATH up "/prefix/${CMAKE_INSTALL_LIBDIR}/pkgconfig" "/prefix")
string(REGEX REPLACE "/$" "" QTRACE_PC_PREFIX "\${pcfiledir}/${up}")
set(QTRACE_PC_PRIVATE "-pthread")
if(QTRACE_JEMALLOC)
  string(APPEND QTRACE_PC_PRIVATE " -Wl,-lstdc++ -Wl,-lc -ljemalloc")
endif()
configure_file(cmake/qtrace.pc.in ${PROJECT_BINARY_DIR}/qtrace.pc @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/qtrace.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
