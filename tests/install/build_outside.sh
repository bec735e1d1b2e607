#!/usr/bin/env bash
# Installs into a fresh prefix, builds a host outside the tree against it and runs that.
#   build_outside.sh shared|static|pkg-config|pkg-config-static BUILD_FOLDER SOURCE_FOLDER
set -euo pipefail
way=$1 build=$2 source=$3

work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
cmake --install "$build" --prefix "$work/prefix" >/dev/null
cp "$source/tests/install/host.cpp" "$work"
# Headers of the host's own that bear names of ours.
mkdir -p "$work/own/util" "$work/own/platform"
echo '#error "a header of the host was taken for one of the library"' | tee "$work/own/util/export.h" >"$work/own/platform/device.h"

with_cmake() {
  cat >"$work/CMakeLists.txt" <<LISTS
cmake_minimum_required(VERSION 3.16)
project(host CXX)
set(CMAKE_CXX_STANDARD 17)
find_package(qtrace REQUIRED)
add_executable(host host.cpp)
target_include_directories(host BEFORE PRIVATE own)
target_link_libraries(host PRIVATE $1)
LISTS
  cmake -S "$work" -B "$work/build" -DCMAKE_PREFIX_PATH="$work/prefix" >/dev/null
  cmake --build "$work/build" >/dev/null
  "$work/build/host" "$work/device"
}

with_pkg_config() {
  local config
  config=$(find "$work/prefix" -name qtrace.pc)
  export PKG_CONFIG_PATH=${config%/*}
  local library_folder
  library_folder=$(pkg-config --variable=libdir qtrace)
  [ "$1" = static ] && rm "$library_folder"/libqtrace.so*
  # shellcheck disable=SC2046
  g++ -std=c++17 -I"$work/own" -Wall -Wextra -Werror "$work/host.cpp" -o "$work/host" $(pkg-config --cflags --libs ${2:-} qtrace)
  LD_LIBRARY_PATH=$library_folder "$work/host" "$work/device"
}

case $way in
  shared) with_cmake qtrace::qtrace ;;
  static) with_cmake qtrace::qtrace_static ;;
  pkg-config) with_pkg_config shared ;;
  pkg-config-static) with_pkg_config static --static ;;
esac
test -n "$(find "$work/device/UserData/Track" -name 'AutoSaveTrk-*.gpx')"
