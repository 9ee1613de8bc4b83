#!/usr/bin/env bash
# Sets up, builds and runs every test: the normal build; the Windows build under Wine; then one
# clang build with the address and undefined-behaviour sanitizers that runs the unit tests and
# the fuzzers (one build for both keeps CI within its hour on two cores).
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

echo "== Windows: cross-built, then tested under Wine =="
bash scripts/windows.sh
bash scripts/windows_test.sh

echo "== address and undefined-behaviour sanitizers, and the fuzzers =="
# Each libFuzzer harness for a fixed number of inputs (scripts/fuzz.sh), built with the tests.
FUZZ_BUILD_DIR=build-sanitize FUZZ_BUILD_TESTS=ON bash scripts/fuzz.sh
ASAN_OPTIONS=detect_leaks=1 UBSAN_OPTIONS=print_stacktrace=1 LSAN_OPTIONS="suppressions=$PWD/scripts/lsan.supp" \
  ctest --test-dir build-sanitize --output-on-failure -j "$(nproc)"
