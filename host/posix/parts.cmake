# The libraries of the program, as they are installed on this machine.
find_package(CLI11 REQUIRED)
find_package(PkgConfig REQUIRED)
pkg_check_modules(GPSD_CLIENT REQUIRED IMPORTED_TARGET libgps)
# Its flags say how the installed library was built: the header must agree with it.
pkg_check_modules(HTTP_SERVER REQUIRED IMPORTED_TARGET cpp-httplib)
find_package(EXPAT REQUIRED)
find_package(nlohmann_json REQUIRED)

set(libraries CLI11::CLI11 nlohmann_json::nlohmann_json PkgConfig::GPSD_CLIENT)
set(inner_libraries PkgConfig::HTTP_SERVER EXPAT::EXPAT)
