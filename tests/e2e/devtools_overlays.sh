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

# Each switch's label in the debug menu and the name of its picture.
labels=("Pathfinding" "Sight ranges" "Exploration ranges" "Attack ranges" "Player actions"
  "Human actions" "Energies" "Trait data" "show_ids")
names=(pathfinding sight exploration attack player_actions human_actions energies traits ids)
{
  echo "frames 150"
  echo "key p"
  echo "frames 5"
  echo "key ctrl+d"
  echo "wait Debug settings"
  # The menu starts with every switch on.
  for label in "${labels[@]}" show_log; do
    echo "click $label"
  done
  # Plain pictures over a second: a paused trial still breathes and bobs (idle motion runs on
  # the wall clock), so what they differ in is left out of every comparison. The last one
  # checks that nothing moves outside that part.
  echo "frames 5"
  for shot in 0 1 2 3 4; do
    echo "screenshot plain_$shot.png"
    echo "frames 9"
  done
  echo "frames 14"
  echo "screenshot plain_check.png"
  for i in "${!labels[@]}"; do
    echo "click ${labels[$i]}"
    echo "frames 3"
    echo "screenshot ${names[$i]}.png"
    echo "click ${labels[$i]}"
    echo "frames 3"
  done
  echo "quit"
} > overlays.ui

"$veldra" play_level=levels/level_01.txt seed=5 developer_keys=1 lang=en config= \
  ui_script=overlays.ui frames=3000 log_output_file=run.log > /dev/null

"$python" - "${names[@]}" << 'PY'
import sys
from PIL import Image, ImageChops, ImageFilter

def viewport(path):
    image = Image.open(path).convert("RGB")
    sx, sy = image.width / 1600, image.height / 900
    # The world below the HUD band, left of the debug menu's column.
    world = image.crop((0, int(84 * sy), int(1280 * sx), image.height))
    # The legend of ranges and paths in the viewport's top left corner.
    world.paste((0, 0, 0), (0, 0, int(200 * sx), int(130 * sy)))
    return world

def changed(a, b):
    return ImageChops.difference(a, b).convert("L").point(lambda v: 255 if v else 0)

plain = viewport("plain_0.png")
moving = Image.new("L", plain.size)
for shot in range(1, 5):
    moving = ImageChops.lighter(moving, changed(plain, viewport(f"plain_{shot}.png")))
moving = moving.filter(ImageFilter.MaxFilter(7))
still = ImageChops.invert(moving)
print(f"moving while paused: {sum(1 for v in moving.getdata() if v)} of "
      f"{plain.width * plain.height} pixels, left out")

def differs_where_still(path):
    return ImageChops.multiply(changed(plain, viewport(path)), still).getbbox() is not None

if differs_where_still("plain_check.png"):
    sys.exit("a later plain picture differs outside what idle motion moves: something else moves")
failed = [name for name in sys.argv[1:] if not differs_where_still(name + ".png")]
if failed:
    sys.exit("no drawing in the world for: " + ", ".join(failed))
PY
echo "devtools overlays: ok"
