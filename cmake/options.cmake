# How everything of the project is compiled; linked by each target of ours, never passed on to a host.
add_library(qtrace_options INTERFACE)
target_compile_features(qtrace_options INTERFACE cxx_std_20)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)
set(CMAKE_CXX_VISIBILITY_PRESET hidden)
set(CMAKE_VISIBILITY_INLINES_HIDDEN ON)

# No fused multiply-add: the figures stored with a track are the same on every processor.
target_compile_options(qtrace_options INTERFACE
  -ffp-contract=off -Wall -Wextra -Wpedantic -Wshadow -Wconversion
  $<$<BOOL:${QTRACE_WARNINGS_AS_ERRORS}>:-Werror>)

# Sizes of files and times have 64 bits on 32-bit systems too; headers of ours show neither to a host.
if(CMAKE_SIZEOF_VOID_P EQUAL 4 AND NOT WIN32)
  target_compile_definitions(qtrace_options INTERFACE _FILE_OFFSET_BITS=64 _TIME_BITS=64)
endif()

if(QTRACE_SANITIZE)
  target_compile_options(qtrace_options INTERFACE
    -fsanitize=${QTRACE_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer)
  target_link_options(qtrace_options INTERFACE -fsanitize=${QTRACE_SANITIZE})
endif()
