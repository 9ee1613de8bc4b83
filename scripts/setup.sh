#!/usr/bin/env bash
# Installs what Veldra needs on Debian 12 (run as root) and builds it into build/: the program
# alone unless BUILD_TARGETS names more (scripts/test.sh asks for "all").
set -euo pipefail
cd "$(dirname "$0")/.."

packages=(
  cmake ninja-build g++ clang libclang-rt-14-dev pkg-config
  nlohmann-json3-dev libfmt-dev
  libsdl2-dev libsdl2-mixer-dev libimgui-dev libstb-dev libcurl4-openssl-dev libcpp-httplib-dev libsqlite3-dev fonts-dejavu-core fonts-dejavu-extra
  xvfb xauth
  libgtest-dev libgmock-dev libbenchmark-dev
  libmuparser-dev libboost-graph-dev
  locales python3 python3-pil
  openssl chromium
)
source scripts/install_packages.sh
install_packages "${packages[@]}"

build_dir=${BUILD_DIR:-build}
cmake -S . -B "$build_dir" -G Ninja -DCMAKE_BUILD_TYPE=${BUILD_TYPE:-RelWithDebInfo} ${CMAKE_EXTRA_ARGS:-} >/dev/null
cmake --build "$build_dir" -j "$(nproc)" --target ${BUILD_TARGETS:-veldra}
