#!/usr/bin/env bash
# An interactive trial played headless records its inputs; its replay reaches the same result,
# a recording with commands changes the result and replays to it exactly, and broken or foreign
# recordings are refused with their reason and nothing overwritten.
set -euo pipefail
veldra=$1
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
cd "$work"

"$veldra" headless=1 play_level=levels/level_05.txt seed=3 traits=1,0,0,0,-1 \
  record_inputs=played.inputs > played.json
# Nobody steered: the same trial as the automatic one of the same level, seed and traits.
"$veldra" trial_level=levels/level_05.txt seed=3 traits=1,0,0,0,-1 > automatic.json
cmp played.json automatic.json
grep -qx "veldra-inputs 1" <(head -n 1 played.inputs)
grep -q '^result ' played.inputs
"$veldra" headless=1 replay=played.inputs > replayed.json
cmp played.json replayed.json

# Steering changes the trial; the recorded result of the steered trial is reached again.
sed '/^result /,$d' played.inputs > steered.inputs
printf 'move 30 1 0\nmove 200 0 1\ntarget 400 300 300\nmove 600 0 0\n' >> steered.inputs
printf 'result survived 0 0 0 0 0 0\nend\n' >> steered.inputs
if "$veldra" headless=1 replay=steered.inputs log_output_file=steer.log > steered.json; then
  echo "a wrong recorded result was accepted"; exit 1
fi
grep -q "The replay ended differently from the recording" steer.log
! cmp -s steered.json played.json
result=$(python3 -c 'import json,sys; r=json.load(open("steered.json")); print("result", r["type"], r["time_left"], r["num_monsters_remaining"], r["num_food_remaining"], r["num_humans_remaining"], repr(float(r["energy_remaining"])), repr(float(r["trial_score"])))')
sed -i "s/^result .*/$result/" steered.inputs
"$veldra" headless=1 replay=steered.inputs > again.json
cmp steered.json again.json

refused() {  # file, expected text
  if "$veldra" headless=1 replay="$1" log_output_file=refused.log > out.json; then
    echo "replay of $1 was not refused"; exit 1
  fi
  grep -qF "$2" refused.log || { echo "no \"$2\" for $1"; cat refused.log; exit 1; }
  [ ! -s out.json ]
}
refused missing.inputs "no such file"
head -c 300 /dev/urandom > binary.inputs
refused binary.inputs "is not an input recording"
head -n 6 played.inputs > truncated.inputs
refused truncated.inputs "is truncated"
sed 's/^level_digest .*/level_digest 0000000000000000/' played.inputs > other_level.inputs
refused other_level.inputs "recorded on another level"
echo '{ "trial_time": 1 }' > short.json
if "$veldra" headless=1 replay=played.inputs config=short.json log_output_file=refused.log > out.json; then
  echo "a recording replayed under another configuration"; exit 1
fi
grep -qF "recorded with another configuration" refused.log
mkdir adir
refused adir "is a directory"

# The recording never replaces the level it was played on.
cp "$(dirname "$veldra")/datafiles/levels/level_01.txt" mine.txt
cp mine.txt mine.before
if "$veldra" headless=1 play_level=mine.txt record_inputs=mine.txt log_output_file=same.log > /dev/null; then
  echo "recording over the level was accepted"; exit 1
fi
cmp mine.txt mine.before
grep -q "names the level file itself" same.log

# A recording never replaces a file that is there, and a path that cannot be written stops the
# program before the trial, without falling back on a file of the same name here (the level).
echo "precious" > taken.inputs
set +e
"$veldra" headless=1 play_level=levels/level_01.txt record_inputs=taken.inputs > out.json 2> err.txt
status=$?
set -e
[ "$status" -eq 2 ]
[ "$(cat taken.inputs)" = precious ]
[ ! -s out.json ]
grep -q "record_inputs=taken.inputs cannot be made: a file of that name is already there" err.txt
if "$veldra" headless=1 play_level=mine.txt record_inputs=nowhere/mine.txt > out.json 2> err.txt; then
  echo "an unwritable recording path was accepted"; exit 1
fi
cmp mine.txt mine.before
[ ! -s out.json ]
grep -q "record_inputs=nowhere/mine.txt cannot be made: No such file or directory" err.txt

# Without record_inputs the recording goes beside the log.
mkdir logs
"$veldra" headless=1 play_level=levels/level_01.txt log_output_file=logs/run.log > /dev/null
ls logs/level_01-*.inputs > /dev/null
# Two in the same second get a name each.
"$veldra" headless=1 play_level=levels/level_01.txt log_output_file=logs/run.log > /dev/null &
"$veldra" headless=1 play_level=levels/level_01.txt log_output_file=logs/run2.log > /dev/null
wait
[ "$(ls logs/level_01-*.inputs | wc -l)" -eq 3 ]

# No display: the window cannot open, the program says why and what to do instead.
if env -u DISPLAY -u WAYLAND_DISPLAY -u SDL_VIDEODRIVER SDL_AUDIODRIVER=dummy \
    "$veldra" play_level=levels/level_01.txt frames=2 record_inputs=nodisplay.inputs 2> nodisplay.txt; then
  echo "a window opened without a display"; exit 1
fi
grep -q "The game window cannot open" nodisplay.txt
grep -q "headless=1" nodisplay.txt
[ ! -e nodisplay.inputs ]
