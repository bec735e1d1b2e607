# libqtrace.so and libqtrace.a from the same objects.
find_package(Threads REQUIRED)

add_library(qtrace_objects OBJECT ${sources})
target_include_directories(qtrace_objects PUBLIC ${PROJECT_SOURCE_DIR})
target_compile_definitions(qtrace_objects PRIVATE QTRACE_BUILDING)
target_link_libraries(qtrace_objects PRIVATE qtrace_options)

# jemalloc exports malloc and operator new too. The C and C++ libraries are named in front of it, so that the host's own
# memory stays theirs and jemalloc serves the point lists only; the compiler driver would move plain -lstdc++ and -lc to
# the end.
set(qtrace_link_libraries Threads::Threads)
if(QTRACE_JEMALLOC)
  find_path(QTRACE_JEMALLOC_INCLUDE jemalloc/jemalloc.h REQUIRED)
  target_include_directories(qtrace_objects SYSTEM PRIVATE ${QTRACE_JEMALLOC_INCLUDE})
  target_compile_definitions(qtrace_objects PRIVATE QTRACE_JEMALLOC)
  list(APPEND qtrace_link_libraries -Wl,-lstdc++ -Wl,-lc jemalloc)
endif()
find_header_folder(QTRACE_RAPIDXML_INCLUDE rapidxml/rapidxml.hpp)
target_include_directories(qtrace_objects SYSTEM PRIVATE ${QTRACE_RAPIDXML_INCLUDE})

add_library(qtrace SHARED $<TARGET_OBJECTS:qtrace_objects>)
target_link_libraries(qtrace PRIVATE qtrace_options ${qtrace_link_libraries})

add_library(qtrace_static STATIC $<TARGET_OBJECTS:qtrace_objects>)
set_target_properties(qtrace_static PROPERTIES OUTPUT_NAME qtrace)
target_link_libraries(qtrace_static PUBLIC ${qtrace_link_libraries})
target_compile_definitions(qtrace_static INTERFACE QTRACE_STATIC)

foreach(library qtrace qtrace_static)
  target_include_directories(${library} INTERFACE $<BUILD_INTERFACE:${PROJECT_SOURCE_DIR}>)
endforeach()
set_target_properties(qtrace PROPERTIES VERSION ${PROJECT_VERSION} SOVERSION ${PROJECT_VERSION_MAJOR})
if(WIN32)
  set_target_properties(qtrace PROPERTIES PREFIX "")
else()
  target_link_options(qtrace PRIVATE -Wl,--version-script=${PROJECT_SOURCE_DIR}/cmake/exports.map)
  set_target_properties(qtrace PROPERTIES LINK_DEPENDS ${PROJECT_SOURCE_DIR}/cmake/exports.map)
endif()
