# Headers alone come from the machine that builds. Without a client of the GPS daemon, without a server of pages and
# without the lines of a serial port as POSIX has them, what needs those is left out: host/windows/left_out.cpp says so.
enable_language(RC)
find_header_folder(QTRACE_CLI11_INCLUDE CLI/CLI.hpp)
find_header_folder(QTRACE_JSON_INCLUDE nlohmann/json.hpp)
add_library(qtrace_host_headers INTERFACE)
target_include_directories(qtrace_host_headers SYSTEM INTERFACE ${QTRACE_CLI11_INCLUDE} ${QTRACE_JSON_INCLUDE})
target_compile_definitions(qtrace_host_headers INTERFACE _FILE_OFFSET_BITS=64 UNICODE NOMINMAX)

list(FILTER parts EXCLUDE REGEX
  "/(source/(gpsd_[a-z]*|serial_device)|page/([a-z]*_server|web_browser)|commands/serve_command)[.]cpp$")
set(libraries qtrace_host_headers)
set(inner_libraries)
set(of_program windows/qtrace.rc)
