#!/usr/bin/env bash
# Sets up, builds and runs every test: the normal build, the fuzzers, then the sanitizer build.
set -euo pipefail
cd "$(dirname "$0")/.."

BUILD_TARGETS=all CMAKE_EXTRA_ARGS="-DVELDRA_WERROR=ON" bash scripts/setup.sh

# A locale with a decimal comma, so the test that numbers are written the same in every locale
# runs instead of being skipped.
if ! locale -a 2>/dev/null | grep -qi '^de_DE\.utf-\?8$'; then
  grep -q '^de_DE.UTF-8 UTF-8' /etc/locale.gen || echo 'de_DE.UTF-8 UTF-8' >> /etc/locale.gen
  locale-gen >/dev/null
fi
# Each window test starts a virtual display (Xvfb) of its own and plays into SDL's dummy audio
# driver; with VELDRA_REQUIRE_DISPLAY they fail instead of skipping when no window opens. No
# display is shared: a test that opened a window without its own display fails here.
export VELDRA_REQUIRE_DISPLAY=1 SDL_AUDIODRIVER=dummy
unset DISPLAY WAYLAND_DISPLAY
ctest --test-dir build --output-on-failure -j "$(nproc)"

# Each libFuzzer harness for a fixed number of inputs (scripts/fuzz.sh).
echo "== fuzzing =="
bash scripts/fuzz.sh

echo "== address and undefined-behaviour sanitizers =="
BUILD_TARGETS=all BUILD_DIR=build-sanitize BUILD_TYPE=Debug CMAKE_EXTRA_ARGS="-DVELDRA_SANITIZE=ON -DVELDRA_WERROR=ON -DVELDRA_BUILD_BENCH=OFF" \
  bash scripts/setup.sh
ASAN_OPTIONS=detect_leaks=1 UBSAN_OPTIONS=print_stacktrace=1 LSAN_OPTIONS="suppressions=$PWD/scripts/lsan.supp" \
  ctest --test-dir build-sanitize --output-on-failure -j "$(nproc)"
