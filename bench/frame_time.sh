#!/usr/bin/env bash
# Prints the window's frame times: simulation plus drawing plus presenting, per frame, on the
# largest shipped level with the whole level (every creature) in view, at game speed 1 and 10,
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

measure() {  # label, extra parameters...
    local label="$1"
    shift
    SDL_RENDER_DRIVER=software SDL_AUDIODRIVER=dummy \
        xvfb-run -a -s "-screen 0 1920x1080x24" "$veldra" play_level=levels/level_10.txt seed=1 \
        camera_zoom=fit frames="$frames" frame_times="$work/frames.csv" \
        record_inputs="$work/bench.inputs" "$@" >/dev/null 2>"$work/err" || true
    # The first frame paints the level's pictures once; it is start-up, reported on its own.
    python3 - "$label" "$work/frames.csv" "$work/err" <<'PY'
import sys, statistics
label, path, err = sys.argv[1:]
ms = [float(line.split(",")[1]) for line in open(path).read().splitlines()[1:]]
first = [l for l in open(err) if "first frame after" in l]
steady = sorted(ms[1:])
def pct(p):
    return steady[min(len(steady) - 1, max(0, -(-int(p * len(steady) * 1000) // 1000) - 1))]
print(f"{label:>14}: {len(steady)} frames, median {statistics.median(steady):.2f} ms, "
      f"99th percentile {pct(0.99):.2f} ms, max {steady[-1]:.2f} ms; "
      f"{first[-1].split('first frame after')[1].strip() if first else '?'} to the first frame")
PY
}

measure "game speed 1"
measure "game speed 10" config="$work/speed10.json"
