# Sourced by e2e scripts that open a window: starts a virtual X display of the script's own and
# points DISPLAY at it, so no other test's window shares its pointer or keyboard focus. Returns
# non-zero when Xvfb is missing or does not start; the caller stops it with stop_own_display.
start_own_display() {
  command -v Xvfb > /dev/null || return 1
  local number_file
  number_file=$(mktemp)
  # Xvfb picks a free display itself and writes its number, a line, once it listens.
  Xvfb -displayfd 3 -screen 0 1920x1080x24 -nolisten tcp 3> "$number_file" > /dev/null 2>&1 &
  own_display_pid=$!
  for _ in $(seq 200); do
    [ "$(wc -l < "$number_file")" -ge 1 ] && break
    kill -0 "$own_display_pid" 2> /dev/null || break
    sleep 0.1
  done
  if [ "$(wc -l < "$number_file")" -lt 1 ]; then
    rm -f "$number_file"
    stop_own_display
    return 1
  fi
  export DISPLAY=":$(head -n1 "$number_file")"
  rm -f "$number_file"
}

stop_own_display() {
  [ -n "${own_display_pid:-}" ] && kill "$own_display_pid" 2> /dev/null || true
}

# The start every windowed script makes: its own display, else the desktop's, else the test is
# skipped (exit 77), unless VELDRA_REQUIRE_DISPLAY is set, which makes a missing display a
# failure. Stops the display and removes `$work` on exit, and silences SDL's audio.
start_own_display_or_skip() {
  trap 'stop_own_display; rm -rf "$work"' EXIT
  export SDL_AUDIODRIVER=dummy
  if ! start_own_display; then
    [ -n "${VELDRA_REQUIRE_DISPLAY:-}" ] && { echo "VELDRA_REQUIRE_DISPLAY is set but Xvfb does not start"; exit 1; }
    [ -z "${DISPLAY:-}" ] && { echo "no display: skipped"; exit 77; }
  fi
  return 0
}
