#!/usr/bin/env bash
# A local session run headless (demo=1 headless=1) plays every level of the configuration, keeps
# its records in the autosave beside the log, and ends by itself; a level that cannot be loaded
# or an autosave that cannot be made stops it before it starts, and a bad demo value is a bad
# parameter.
set -euo pipefail
veldra=$1
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
cd "$work"
mkdir logs

echo '{ "trial_time": 3, "levels": ["levels/level_01.txt", "levels/level_02.txt"] }' > two.json
"$veldra" headless=1 demo=1 config=two.json log_output_file=logs/run.log
autosave=$(ls logs/session-DEMO_USER-*.csv)
[ "$(wc -l < "$autosave")" -eq 3 ]
grep -q '^config_version;game_version;level_info.filename;' "$autosave"
sed -n 2p "$autosave" | grep -q ';levels/level_01.txt;.*;DEMO_USER$'
sed -n 3p "$autosave" | grep -q ';levels/level_02.txt;.*;DEMO_USER$'
grep -q "The session's results are in" logs/run.log
[ "$(grep -c "Saved the result of level" logs/run.log)" -eq 2 ]

# The same columns as an auto run writes, so one analysis script reads both.
echo '{ "levels": ["levels/level_01.txt"], "num_runs_per_permutation": 0 }' > none.json
"$veldra" auto_run_config=none.json auto_run_output=auto.csv auto_run_seed=1 2> /dev/null
cmp <(head -n 1 "$autosave") auto.csv

# A folder the autosave cannot be made in: refused before the first trial, naming the file.
if "$veldra" headless=1 demo=1 config=two.json verbose=1 log_output_file=gone/run.log 2> err.txt; then
  echo "a session whose results cannot be kept should not start"; exit 1
fi
grep -q 'The session does not start: its results cannot be kept in "gone/session-DEMO_USER-.*\.csv": No such file or directory' err.txt
! grep -q "Trial ended" err.txt

# A log on a device is said to be lost, and the autosave goes to the working directory, not
# beside the device.
mkdir devlog
(cd devlog && "$veldra" headless=1 demo=1 config=../two.json log_output_file=/dev/full 2> err.txt)
grep -q "Cannot write the log file log_output_file=/dev/full: No space left on device" devlog/err.txt
[ "$(wc -l < devlog/session-DEMO_USER-*.csv)" -eq 3 ]

echo '{ "levels": ["levels/level_01.txt", "nowhere.txt"] }' > broken.json
if "$veldra" headless=1 demo=1 config=broken.json log_output_file=logs/broken.log 2> err.txt; then
  echo "a session with a missing level should not start"; exit 1
fi
grep -q "nowhere.txt" err.txt
[ "$(ls logs/session-DEMO_USER-*.csv | wc -l)" -eq 1 ]  # nothing new was written

set +e
"$veldra" headless=1 demo=maybe 2> err.txt
status=$?
set -e
[ "$status" -eq 2 ]
grep -q "demo=maybe must be 0 or 1." err.txt
echo "local session: ok"
