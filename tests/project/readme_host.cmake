# The host program of the README, taken out of it and built as it stands there.
file(READ ${PROJECT_SOURCE_DIR}/README.md readme)
string(REGEX MATCH "```cpp\n(.*)\n```\n\n`cmake --install`" found "${readme}")
set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/README.md)
file(CONFIGURE OUTPUT readme_host.cpp CONTENT "${CMAKE_MATCH_1}\n" @ONLY)
add_executable(readme_host ${CMAKE_CURRENT_BINARY_DIR}/readme_host.cpp)
target_link_libraries(readme_host PRIVATE qtrace_options qtrace)
add_test(NAME project.readme_host
  COMMAND sh -c "rm -rf readme_host_files && mkdir readme_host_files && cd readme_host_files && $<TARGET_FILE:readme_host>")
set_tests_properties(project.readme_host PROPERTIES PASS_REGULAR_EXPRESSION "59 points recorded, saved")
