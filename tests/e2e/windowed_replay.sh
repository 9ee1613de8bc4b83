#!/usr/bin/env bash
# A recording played in a real window reaches the same TrialResult as its headless replay, and
# both reach the result the recording holds. The window opens on a virtual display of the test's
# own (Xvfb); without Xvfb or a desktop display the test is skipped (status 77), unless
# VELDRA_REQUIRE_DISPLAY is set.
set -euo pipefail
veldra=$1
source "$(dirname "$0")/support/own_display.sh"
work=$(mktemp -d)
cd "$work"
start_own_display_or_skip

# A short trial at five ticks a frame, so the window plays it in a few seconds.
echo '{ "trial_time": 20, "game_speed": 5 }' > short.json
"$veldra" headless=1 config=short.json play_level=levels/level_04.txt seed=11 traits=0,1,0,-1,0 \
  record_inputs=base.inputs > /dev/null
# The player's steering: walking, a click on a cell and on whatever stands near the middle.
sed '/^result /,$d' base.inputs > steered.inputs
printf 'move 20 1 0\nmove 90 0 1\nmove 150 0 0\ntarget 300 640 480\nmove 500 -1 0\nmove 640 0 0\n' >> steered.inputs
printf 'result survived 0 0 0 0 0 0\nend\n' >> steered.inputs
"$veldra" headless=1 config=short.json replay=steered.inputs > first.json 2>/dev/null || true
result=$(python3 -c 'import json; r=json.load(open("first.json")); print("result", r["type"], r["time_left"], r["num_monsters_remaining"], r["num_food_remaining"], r["num_humans_remaining"], repr(float(r["energy_remaining"])), repr(float(r["trial_score"])))')
sed -i "s/^result .*/$result/" steered.inputs

"$veldra" headless=1 config=short.json replay=steered.inputs > headless.json
# lang= too: without it the window would first ask for the language.
"$veldra" config=short.json lang=en replay=steered.inputs log_output_file=window.log > window.json
grep -q "The replay reached the recorded result." window.log
cmp headless.json window.json
cmp first.json window.json
