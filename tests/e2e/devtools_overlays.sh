#!/usr/bin/env bash
# Every drawing of the debug visualizer shows in a real window: one run pauses a played trial,
# shows the developer tools, turns every switch of the debug menu off for a plain picture, then
# turns each on alone for a picture of its own. Each must differ from the plain one inside the
# world's viewport, away from the debug menu and the legend, where only its drawing can change
# anything; two plain pictures taken frames apart must not differ, or the comparison would prove
# nothing. Skipped (status 77) without Xvfb or a display, unless VELDRA_REQUIRE_DISPLAY is set.
set -euo pipefail
veldra=$1
source "$(dirname "$0")/support/own_display.sh"
work=$(mktemp -d)
# The debug menu saves its switches under the working directory.
cd "$work"
start_own_display_or_skip

python=python3
"$python" -c 'import PIL' 2> /dev/null || python=/usr/bin/python3

# label in the debug menu, name of its picture
overlays=(
  "Pathfinding pathfinding"
  "Sight_ranges sight"
  "Exploration_ranges exploration"
  "Attack_ranges attack"
  "Player_actions player_actions"
  "Human_actions human_actions"
  "Energies energies"
  "Trait_data traits"
  "show_ids ids"
)
{
  echo "frames 150"
  echo "key p"
  echo "frames 5"
  echo "key ctrl+d"
  echo "wait Debug settings"
  for entry in "${overlays[@]}" "show_log log"; do
    set -- $entry
    echo "click ${1//_/ }"
  done
  echo "frames 5"
  echo "screenshot plain.png"
  echo "frames 20"
  echo "screenshot plain_later.png"
  for entry in "${overlays[@]}"; do
    set -- $entry
    echo "click ${1//_/ }"
    echo "frames 3"
    echo "screenshot $2.png"
    echo "click ${1//_/ }"
    echo "frames 3"
  done
  echo "quit"
} > overlays.ui

"$veldra" play_level=levels/level_01.txt seed=5 developer_keys=1 lang=en config= \
  ui_script=overlays.ui frames=3000 log_output_file=run.log > /dev/null

names=()
for entry in "${overlays[@]}"; do
  set -- $entry
  names+=("$2")
done
"$python" - "${names[@]}" << 'PY'
import sys
from PIL import Image, ImageChops

def viewport(path):
    image = Image.open(path).convert("RGB")
    sx, sy = image.width / 1600, image.height / 900
    # The world below the HUD band, left of the debug menu's column.
    box = (0, int(84 * sy), int(1290 * sx), image.height)
    world = image.crop(box)
    # The legend of ranges and paths in the viewport's top left corner.
    legend = Image.new("RGB", (int(200 * sx), int(130 * sy)))
    world.paste(legend, (0, 0))
    return world

plain = viewport("plain.png")
if ImageChops.difference(plain, viewport("plain_later.png")).getbbox() is not None:
    sys.exit("two plain pictures of the paused trial differ: something still moves")
failed = [name for name in sys.argv[1:]
          if ImageChops.difference(plain, viewport(name + ".png")).getbbox() is None]
if failed:
    sys.exit("no drawing in the world for: " + ", ".join(failed))
PY
echo "devtools overlays: ok"
