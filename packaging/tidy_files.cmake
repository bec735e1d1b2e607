# Run by cpack on the files of a package before it is closed.
set(root ${CPACK_TEMPORARY_INSTALL_DIRECTORY}${CPACK_PACKAGING_INSTALL_PREFIX})

# The system's loader knows where the library lies; an installation elsewhere looks beside the program.
file(RPATH_REMOVE FILE ${root}/bin/qtrace)

# Stripping leaves archives alone, whose debugging information names the folders of the build.
find_program(strip strip REQUIRED)
file(GLOB_RECURSE archives ${root}/lib/*.a)
foreach(archive IN LISTS archives)
  execute_process(COMMAND ${strip} --strip-debug --enable-deterministic-archives ${archive} COMMAND_ERROR_IS_FATAL ANY)
endforeach()

# The service calls the program where the package puts it, not where this build would be installed.
file(GLOB services ${root}/lib/systemd/*/*.service)
foreach(service IN LISTS services)
  file(READ ${service} text)
  string(REGEX REPLACE "(\nExec[A-Za-z]*=)[^ \n]*/qtrace" "\\1${CPACK_PACKAGING_INSTALL_PREFIX}/bin/qtrace" text "${text}")
  file(WRITE ${service} "${text}")
endforeach()
