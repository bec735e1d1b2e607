# The host programs of the documents, taken out of them and built as they stand there.
# The first program of a document; its output matches the expression.
function(add_document_host name document expression)
  file(READ ${PROJECT_SOURCE_DIR}/${document} text)
  string(REGEX MATCH "```cpp\n(([^`]|`[^`])*)\n```\n" found "${text}")
  if(NOT found)
    message(FATAL_ERROR "${document} has no program")
  endif()
  set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/${document})
  file(CONFIGURE OUTPUT ${name}.cpp CONTENT "${CMAKE_MATCH_1}\n" @ONLY)
  add_executable(${name} ${CMAKE_CURRENT_BINARY_DIR}/${name}.cpp)
  target_link_libraries(${name} PRIVATE qtrace_options qtrace)
  add_test(NAME project.${name}
    COMMAND sh -c "rm -rf ${name}_files && mkdir ${name}_files && cd ${name}_files && $<TARGET_FILE:${name}>")
  set_tests_properties(project.${name} PROPERTIES PASS_REGULAR_EXPRESSION "${expression}")
endfunction()

add_document_host(readme_host README.md "59 points recorded, saved")
add_document_host(hosting_host docs/HOSTING.md
  "loaded.*599 points shown.*: 66[0-9][0-9] m, [1-9][0-9]* points to draw\n.*: 66[0-9][0-9] m, ")
