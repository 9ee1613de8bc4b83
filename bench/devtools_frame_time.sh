#!/usr/bin/env bash
# What the developer tools cost a frame: the window's frame times (as bench/frame_time.sh
# measures them) on a level with 40 creatures all in view, run three ways:
#   without the tools (developer_keys=0: a participant's window),
#   with the tools made but hidden (developer_keys=1, Ctrl+D never pressed),
#   with the tools shown and every switch on (the debug menu, visualizer, terminal,
#   time control and inspector panels over the trial).
# Each way runs `rounds` times, alternating, so that a busy moment of the machine does not
# land on one way only.
#
#   bash bench/devtools_frame_time.sh [path/to/veldra] [frames] [rounds]
#
# Needs xvfb-run (Debian packages xvfb and xauth).
set -euo pipefail
cd "$(dirname "$0")/.."
veldra="$(realpath "${1:-build/veldra}")"
frames="${2:-600}"
rounds="${3:-3}"
[[ -x "$veldra" ]] || { echo "no program at $veldra; build first (bash scripts/setup.sh)" >&2; exit 1; }
command -v xvfb-run >/dev/null || { echo "xvfb-run is missing: apt-get install xvfb xauth" >&2; exit 1; }

work="$(mktemp -d)"
trap 'rm -rf "$work"' EXIT

# 30 x 30 cells: the player in the middle, 14 humans, 14 monsters and 12 food around it.
python3 - "$work/forty.txt" <<'PY'
import sys
size = 30
rows = [["x" if x in (0, size - 1) or y in (0, size - 1) else " " for x in range(size)]
        for y in range(size)]
rows[14][14] = "p"
places = [(x, y) for y in range(3, size - 3, 3) for x in range(3, size - 3, 3)]
kinds = "h" * 14 + "m" * 14 + "f" * 12
for (x, y), kind in zip(places, kinds):
    rows[y][x] = kind
open(sys.argv[1], "w").write("\n".join("".join(r) for r in rows) + "\n")
PY
printf 'key ctrl+d\n' > "$work/show.ui"

measure() {  # label, parameters...
    local label="$1"
    shift
    rm -rf "$work/debug" "$work/bench.inputs" "$work/frames.csv"
    (cd "$work" && SDL_AUDIODRIVER=dummy \
        xvfb-run -a -s "-screen 0 1920x1080x24" "$veldra" play_level="$work/forty.txt" seed=1 \
        lang=en config= camera_zoom=fit frames="$frames" frame_times="$work/frames.csv" \
        record_inputs="$work/bench.inputs" "$@" >/dev/null 2>"$work/err") || true
    echo "$label: $(grep "first frame after" "$work/err" | tail -n 1)"
}

for ((round = 1; round <= rounds; round++)); do
    measure "without the tools" developer_keys=0
    measure "tools hidden" developer_keys=1
    measure "tools shown, every switch on" developer_keys=1 ui_script="$work/show.ui"
done
