# find_header_folder(VARIABLE HEADER): the folder that an #include of a header-only library is looked up in.
#
# When cross-compiling such a library comes from this machine, but its neighbours in /usr/include must not be seen: so
# the folder is one of our own, which holds a link to that library alone.
function(find_header_folder variable header)
  if(NOT CMAKE_CROSSCOMPILING)
    find_path(${variable} ${header} REQUIRED)
    return()
  endif()
  find_path(${variable}_ON_BUILD_MACHINE ${header} REQUIRED NO_CMAKE_FIND_ROOT_PATH PATHS /usr/include)
  string(REGEX REPLACE "/.*" "" first ${header})
  file(MAKE_DIRECTORY ${PROJECT_BINARY_DIR}/headers)
  file(CREATE_LINK ${${variable}_ON_BUILD_MACHINE}/${first} ${PROJECT_BINARY_DIR}/headers/${first} SYMBOLIC)
  set(${variable} ${PROJECT_BINARY_DIR}/headers PARENT_SCOPE)
endfunction()
