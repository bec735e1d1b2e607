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
