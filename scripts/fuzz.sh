#!/usr/bin/env bash
# Builds the libFuzzer harnesses with clang and runs each for a fixed number of inputs, starting
# from its seed corpus in tests/fuzz/corpus/<name>/. FUZZ_RUNS sets how many (default 20000);
# FUZZ_SECONDS, when set, runs each for that long instead. A crash leaves its input in
# <build>/artifacts/ and fails the script. FUZZ_BUILD_DIR (default build-fuzz) is the build
# folder; FUZZ_BUILD_TESTS=ON builds the unit tests in it too, under the same sanitizers, so CI
# compiles the game once for both (scripts/test.sh).
set -euo pipefail
cd "$(dirname "$0")/.."

build=${FUZZ_BUILD_DIR:-build-fuzz}
BUILD_TARGETS=all CC=clang CXX=clang++ BUILD_DIR=$build BUILD_TYPE=RelWithDebInfo \
  CMAKE_EXTRA_ARGS="-DVELDRA_FUZZ=ON -DVELDRA_BUILD_TESTS=${FUZZ_BUILD_TESTS:-OFF} -DVELDRA_BUILD_BENCH=OFF -DVELDRA_WERROR=ON" \
  bash scripts/setup.sh

mkdir -p "$build"/artifacts
limit=(-runs="${FUZZ_RUNS:-20000}")
[ -n "${FUZZ_SECONDS:-}" ] && limit=(-max_total_time="$FUZZ_SECONDS")
status=0
shopt -s nullglob
for fuzzer in "$build"/fuzz/fuzz_*; do
  name=${fuzzer##*/fuzz_}
  seeds=tests/fuzz/corpus/$name
  work=$(mktemp -d)
  echo "== fuzz $name (${limit[*]})"
  # New inputs go to a scratch corpus, never into the repository's seeds.
  if ! ASAN_OPTIONS=detect_leaks=1:allocator_may_return_null=1 UBSAN_OPTIONS=print_stacktrace=1 \
      "$fuzzer" "${limit[@]}" -max_len=65536 -rss_limit_mb=2048 -timeout=10 \
      -artifact_prefix="$build"/artifacts/"$name"- "$work" "$seeds" 2>"$build"/"$name".log; then
    tail -n 40 "$build"/"$name".log
    status=1
  else
    tail -n 1 "$build"/"$name".log
  fi
  rm -rf "$work"
done
exit $status
