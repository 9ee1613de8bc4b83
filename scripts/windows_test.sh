#!/usr/bin/env bash
# Runs the Windows build (scripts/windows.sh) under Wine: every unit-test program of
# build-windows/, then veldra.exe headless on the example auto run, whose CSV's SHA-256 it
# prints for comparing with other machines, and the determinism guard of the Linux tests
# (tests/e2e/determinism.sh), and then veldra.exe in a window on a virtual display (Xvfb): it
# must draw the developer menu, and draw it exactly as the Linux build does when build/veldra
# is there to compare with. Exits non-zero when anything fails.
# VELDRA_WINE_PREFIX: the Wine prefix to use (made on first use; a fresh one takes ~10 s).
set -uo pipefail
cd "$(dirname "$0")/.."
root=$PWD
build_dir=$root/build-windows

if [ ! -f "$build_dir/veldra.exe" ]; then
  echo "No $build_dir/veldra.exe: run scripts/windows.sh first." >&2
  exit 1
fi
export WINEDEBUG=-all
export WINEPREFIX=${VELDRA_WINE_PREFIX:-${VELDRA_WINDOWS_CACHE:-/var/cache/veldra-windows}/wine-prefix}
# Headless: no window, no sound device, no Wine dialog asking to install Mono or Gecko.
unset DISPLAY
export SDL_AUDIODRIVER=dummy SDL_VIDEODRIVER=dummy
export WINEDLLOVERRIDES="mscoree,mshtml="
mkdir -p "$WINEPREFIX"
logs=$(mktemp -d)
trap 'rm -rf "$logs"' EXIT

failures=()
summary=()

# One GoogleTest program: its own counts, or why it did not report any.
run_tests() {
  local exe=$1 name log passed failed
  name=$(basename "$exe" .exe)
  log=$logs/$name.log
  (cd "$build_dir" && timeout 600 wine "$exe" --gtest_color=no) >"$log" 2>&1
  local status=$?
  passed=$(sed -n 's/^\[  PASSED  \] \([0-9]*\) tests\?\..*/\1/p' "$log" | tail -n 1)
  failed=$(sed -n 's/^\[  FAILED  \] \([0-9]*\) tests\?, listed below.*/\1/p' "$log" | tail -n 1)
  summary+=("$(printf '%-18s passed %4s  failed %3s  exit %s' "$name" "${passed:-?}" \
    "${failed:-0}" "$status")")
  if [ "$status" -ne 0 ] || [ -z "$passed" ]; then
    failures+=("$name")
    echo "---- $name (exit $status): failures" >&2
    grep -E '^\[  FAILED  \]|Failure|error' "$log" | head -n 40 >&2
    tail -n 5 "$log" >&2
  fi
}

echo "Wine $(wine --version 2>/dev/null), prefix $WINEPREFIX"
for exe in "$build_dir"/test_*.exe; do
  run_tests "$exe"
done

# The example auto run, headless, in a scratch folder, as a lab machine would run it.
work=$(mktemp -d)
trap 'rm -rf "$logs" "$work"' EXIT
example="$build_dir/datafiles/auto_run_example.json"

# EXE plays the auto run CONFIG into OUTPUT (both Unix paths) from the scratch folder, logging
# to LOG; further arguments follow. Wine reads the command line in the locale's encoding, hence
# UTF-8, for names outside ASCII.
auto_run_under_wine() {
  local exe=$1 config=$2 output=$3 log=$4
  shift 4
  (cd "$work" && export LC_ALL=C.UTF-8 && timeout 1200 wine "$exe" \
    auto_run_config="$(winepath -w "$config")" auto_run_output="$(winepath -w "$output")" \
    auto_run_seed=1 "$@") >"$log" 2>&1
}

csv_line="auto run: not run"
if auto_run_under_wine "$build_dir/veldra.exe" "$example" "$work/example.csv" "$logs/auto_run.log" &&
   [ -s "$work/example.csv" ]; then
  lines=$(($(wc -l <"$work/example.csv") - 1))
  csv_line="auto run: $lines trials, example.csv SHA-256 $(sha256sum "$work/example.csv" | cut -d' ' -f1)"
else
  failures+=("auto run")
  csv_line="auto run: FAILED"
  tail -n 20 "$logs/auto_run.log" >&2
fi
# auto_run_jobs=2 cannot start workers on Windows yet: it must say so and still write the
# same bytes from its one process.
jobs_line="auto_run_jobs=2: not run"
if [ -s "$work/example.csv" ]; then
  if auto_run_under_wine "$build_dir/veldra.exe" "$example" "$work/jobs.csv" "$logs/jobs.log" \
       auto_run_jobs=2 &&
     cmp -s "$work/example.csv" "$work/jobs.csv" &&
     grep -q "cannot start worker processes" "$logs/jobs.log"; then
    jobs_line="auto_run_jobs=2: played in one process with a warning, same CSV"
  else
    failures+=("auto_run_jobs=2")
    jobs_line="auto_run_jobs=2: FAILED (different CSV, no warning, or an error)"
    tail -n 20 "$logs/jobs.log" >&2
  fi
fi

# Folders named in letters outside any code page: the program, its data folder, the run's
# configuration and its output. The CSV must be the same bytes as above.
letters_line="letters: not run"
if [ -s "$work/example.csv" ]; then
  place="$work/Programm Jürgen 日本"
  results="$place/Ergebnisse ä"
  mkdir -p "$results"
  cp "$build_dir/veldra.exe" "$place/"
  cp -r "$build_dir/datafiles" "$place/"
  cp "$example" "$results/Lauf ü.json"
  if auto_run_under_wine "$place/veldra.exe" "$results/Lauf ü.json" "$results/Tabelle ö.csv" \
       "$logs/letters.log" &&
     cmp -s "$work/example.csv" "$results/Tabelle ö.csv"; then
    letters_line="letters: program, data, configuration and output in non-ASCII folders, same CSV"
  else
    failures+=("letters")
    letters_line="letters: FAILED (an error, or a different CSV)"
    tail -n 20 "$logs/letters.log" >&2
  fi
fi

# The determinism guard of the Linux tests, with veldra.exe: the same 240 trials must give the
# same digest as on Linux, so results do not depend on the system.
cat > "$logs/veldra-under-wine" <<WRAPPER
#!/bin/sh
exec wine "$build_dir/veldra.exe" "\$@"
WRAPPER
chmod +x "$logs/veldra-under-wine"
if (cd "$logs" && bash "$root/tests/e2e/determinism.sh" "$logs/veldra-under-wine") >"$logs/determinism.log" 2>&1; then
  determinism_line="determinism guard: the same digest as on Linux"
else
  failures+=("determinism")
  determinism_line="determinism guard: FAILED"
  tail -n 20 "$logs/determinism.log" >&2
fi

# In a window: the start screen (the developer menu) through Windows' own video driver, on a
# virtual display. The software renderer, because Wine's Direct3D and OpenGL smooth text unlike
# a PC's, and so that both systems draw the very same pixels.
window_line="window: not run (no xvfb-run)"
if command -v xvfb-run >/dev/null; then
  shots=$(mktemp -d)
  trap 'rm -rf "$logs" "$work" "$shots"' EXIT
  screen=(-s "-screen 0 1920x1080x24")
  picture=$(winepath -w "$shots/windows.png" 2>/dev/null)
  # A Wine server started without a display (every run above, winepath included) would hand
  # this program its desktop, which has none ("Couldn't create window"): wait until it is gone.
  timeout 60 wineserver -w || wineserver -k
  if (cd "$work" && env -u SDL_VIDEODRIVER SDL_RENDER_DRIVER=software timeout 300 xvfb-run -a "${screen[@]}" \
        wine "$build_dir/veldra.exe" lang=en config= frames=90 "screenshot=$picture") \
        >"$logs/window.log" 2>&1 &&
     [ -s "$shots/windows.png" ]; then
    window_line="window: the developer menu drawn ($(stat -c %s "$shots/windows.png") bytes of PNG)"
    if [ -x "$root/build/veldra" ]; then
      (cd "$work" && env -u SDL_VIDEODRIVER SDL_RENDER_DRIVER=software timeout 300 xvfb-run -a "${screen[@]}" \
        "$root/build/veldra" lang=en config= frames=90 "screenshot=$shots/linux.png") \
        >"$logs/window-linux.log" 2>&1
      if cmp -s "$shots/windows.png" "$shots/linux.png"; then
        window_line="window: the developer menu, identical to the Linux build's picture"
      else
        failures+=("window")
        window_line="window: FAILED (the picture differs from the Linux build's)"
        mkdir -p "$root/build-windows/window-pictures"
        cp "$shots"/*.png "$root/build-windows/window-pictures/" 2>/dev/null
        echo "Both pictures: $root/build-windows/window-pictures/" >&2
      fi
    fi
  else
    failures+=("window")
    window_line="window: FAILED (no picture)"
    tail -n 20 "$logs/window.log" >&2
  fi
fi

echo
echo "Summary (Wine):"
printf '  %s\n' "${summary[@]}"
echo "  $csv_line"
echo "  $jobs_line"
echo "  $letters_line"
echo "  $determinism_line"
echo "  $window_line"
if [ ${#failures[@]} -gt 0 ]; then
  echo "FAILED: ${failures[*]}"
  exit 1
fi
echo "All passed."
