#!/usr/bin/env bash
# Prints the window's frame times: simulation plus drawing plus presenting, per frame, on the
# largest shipped level with the whole level (every creature) in view, at game speed 1 and 10
# (and a middle-sized level for comparison),
# in a 1600 x 900 window under Xvfb with SDL's software renderer (no GPU); and the time from
# the program's start to its first drawn frame. Frames are not paced while measured.
#
#   bash bench/frame_time.sh [path/to/veldra] [frames]
#
# Needs xvfb-run (Debian packages xvfb and xauth).
set -euo pipefail
cd "$(dirname "$0")/.."
veldra="$(realpath "${1:-build/veldra}")"
frames="${2:-900}"
[[ -x "$veldra" ]] || { echo "no program at $veldra; build first (bash scripts/setup.sh)" >&2; exit 1; }
command -v xvfb-run >/dev/null || { echo "xvfb-run is missing: apt-get install xvfb xauth" >&2; exit 1; }

work="$(mktemp -d)"
trap 'rm -rf "$work"' EXIT
echo '{ "game_speed": 10 }' > "$work/speed10.json"

measure() {  # label, level, extra parameters...
    local label="$1" level="$2"
    shift 2
    # A recording never replaces a file: each run records afresh.
    rm -f "$work/bench.inputs"
    SDL_AUDIODRIVER=dummy \
        xvfb-run -a -s "-screen 0 1920x1080x24" "$veldra" play_level="$level" seed=1 \
        camera_zoom=fit frames="$frames" frame_times="$work/frames.csv" \
        record_inputs="$work/bench.inputs" "$@" >/dev/null 2>"$work/err" || true
    # The summary line leaves out the frames up to the first drawn one, which paints the
    # level's pictures: that is start-up, reported as the time to the first frame.
    echo "$label: $(grep "first frame after" "$work/err" | tail -n 1)"
}

measure "level_10, game speed 1" levels/level_10.txt
measure "level_10, game speed 10" levels/level_10.txt config="$work/speed10.json"
measure "level_05, game speed 1" levels/level_05.txt
