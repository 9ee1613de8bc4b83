#!/usr/bin/env bash
# Input that cannot give a meaningful run is refused before anything runs, with a message that
# names the parameter, the key or the file and says why, and an exit status a script can test.
set -uo pipefail
veldra=$1
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
cd "$work"
failures=0

# expect STATUS TEXT COMMAND...: the command ends with STATUS and its stderr holds TEXT.
expect() {
  local status=$1 text=$2
  shift 2
  "$veldra" "$@" > out.txt 2> err.txt
  local got=$?
  if [ "$got" -ne "$status" ] || ! grep -qF -- "$text" err.txt; then
    echo "FAIL: $* -> status $got (expected $status), stderr:"
    cat err.txt
    echo "(expected to contain: $text)"
    failures=$((failures + 1))
  fi
}

level=levels/level_04.txt

# Two run modes in one command: neither is dropped silently.
expect 2 "replay= and trial_level= start two different run modes" \
  headless=1 replay=x.inputs trial_level=$level
expect 2 "auto_run_config= and demo= start two different run modes" \
  headless=1 demo=1 auto_run_config=a.json auto_run_output=o.csv

# demo refuses a custom configuration that does not load, as the shell modes do.
expect 1 "Stopped: the custom configuration config=missing could not be loaded" \
  headless=1 demo=1 config=missing

# A level without a player is no trial, whichever mode would play it.
printf '   \n   \n' > blanks.txt
: > empty.txt
expect 1 "Level file \"blanks.txt\" has no player" trial_level=blanks.txt
expect 1 "Level file \"empty.txt\" has no player" headless=1 play_level=empty.txt
echo '{"levels": ["blanks.txt"], "num_runs_per_permutation": 1}' > blanks_run.json
expect 1 "Level file \"blanks.txt\" has no player" \
  auto_run_config=blanks_run.json auto_run_output=blanks.csv
[ -e blanks.csv ] && { echo "FAIL: the refused auto run wrote blanks.csv"; failures=$((failures + 1)); }
echo '{"levels": ["blanks.txt"]}' > blank_levels.json
expect 1 "Level file \"blanks.txt\" has no player" headless=1 demo=1 config=blank_levels

# Values that would overflow or mean nothing.
expect 2 "traits=1e300,0,0,0,0 must be five numbers" trial_level=$level traits=1e300,0,0,0,0
expect 2 "frames=99999999999999999999 is too large: at most 9223372036854775807" \
  headless=1 frames=99999999999999999999
expect 2 "from 320x180 to 7680x4320" window_size=16384x16384
expect 2 "lang=../en could not be loaded" trial_level=$level lang=../en
grep -qF '"../en" is not a language code' err.txt || { echo "FAIL: no reason for lang=../en"; failures=$((failures + 1)); }

# Configurations whose trials could not mean anything.
echo '{"trial_time": -1}' > no_time.json
expect 1 "variable \"trial_time\" must be from 0 to 86400" trial_level=$level config=no_time
echo '{"move_speed_explore": "0/0"}' > nan_speed.json
expect 1 "\"move_speed_explore\" (\"0/0\") gives NaN" trial_level=$level config=nan_speed
echo '{"human_exploration_range": "1/0"}' > inf_range.json
expect 1 "\"human_exploration_range\" (\"1/0\") gives an infinity" trial_level=$level config=inf_range
# Negative monster fight weights are allowed (never drawn).
echo '{"monster_fight_flee_weight": -1}' > negative.json
"$veldra" trial_level=$level config=negative > out.txt 2> err.txt || { echo "FAIL: negative monster fight weight refused"; cat err.txt; failures=$((failures + 1)); }

# Weights that are all 0 are allowed, but the run says at its end how often that happened.
python3 - > zero.json << 'EOF'
import json
keys = ["approach_food", "approach_monster", "approach_human", "avoid_monster", "avoid_human",
        "attack_monster", "attack_human", "exchange_with_human", "explore"]
print(json.dumps({"weight_" + k: "0" for k in keys}))
EOF
"$veldra" trial_level=$level config=zero > out.txt 2> err.txt
status=$?
if [ $status -ne 0 ] || ! grep -qE "Warning: [0-9]+ times? the weights of a human's or monster's choice added up to zero" err.txt; then
  echo "FAIL: all-zero weights: status $status"; tail -3 err.txt; failures=$((failures + 1))
fi
# A parallel auto run counts its workers' errors into the one line a single process writes.
cp "$(dirname "$veldra")/datafiles/$level" z.txt
python3 - > zero_small.json << 'EOF2'
import json
config = json.load(open("zero.json"))
config.update({"options_" + t: [0] for t in
               ["openness", "conscientiousness", "extraversion", "agreeableness"]})
config.update({"options_neuroticism": [-1, 0, 1], "trial_time": 5})
print(json.dumps(config))
EOF2
echo '{"levels": ["z.txt"], "num_runs_per_permutation": 1}' > zero_runs.json
zero_auto() {
  "$veldra" config=zero_small auto_run_config=zero_runs.json auto_run_seed=3 "$@" 2>&1 > /dev/null |
    grep -oE "Warning: [0-9]+ times? the weights" | tr -dc 0-9
}
single=$(zero_auto auto_run_output=zero1.csv)
parallel=$(zero_auto auto_run_output=zero2.csv auto_run_jobs=2)
if [ -z "$single" ] || [ "$single" != "$parallel" ]; then
  echo "FAIL: zero-weight errors of an auto run: one process says '$single', two jobs '$parallel'"
  failures=$((failures + 1))
fi

# A recording with a mistake names its line in words that read.
"$veldra" headless=1 play_level=$level seed=1 record_inputs=rec.inputs > /dev/null 2>&1
sed 's/^seed .*/seed 1e300/' rec.inputs > bad.inputs
expect 1 "Cannot replay \"bad.inputs\": the file has an error on line" headless=1 replay=bad.inputs
grep -qF "the seed is too large: at most 9007199254740992" err.txt || { echo "FAIL: seed limit not named"; failures=$((failures + 1)); }

[ $failures -eq 0 ] || { echo "$failures refusals failed"; exit 1; }
echo "refusals: ok"
