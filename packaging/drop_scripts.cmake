# Run by cpack on each package that it has made: takes out the scripts that it adds for ldconfig, which the package asks
# for by a trigger. Installing runs nothing of ours as root.
foreach(package IN LISTS CPACK_PACKAGE_FILES)
  set(opened ${CPACK_TOPLEVEL_DIRECTORY}/opened)
  file(REMOVE_RECURSE ${opened})
  execute_process(COMMAND dpkg-deb --raw-extract ${package} ${opened} COMMAND_ERROR_IS_FATAL ANY)
  file(REMOVE ${opened}/DEBIAN/postinst ${opened}/DEBIAN/postrm)
  execute_process(COMMAND dpkg-deb --root-owner-group --build ${opened} ${package} OUTPUT_QUIET
    COMMAND_ERROR_IS_FATAL ANY)
endforeach()
