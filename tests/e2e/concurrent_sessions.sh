#!/usr/bin/env bash
# Headless sessions started together in one folder each keep their own autosave; one killed
# with SIGKILL, one stopped with Ctrl-C (SIGINT) and the others played to the end all leave
# files whose every line is a whole record, one per trial the session saved, and nothing else.
set -euo pipefail
veldra=$1
work=$(mktemp -d)
pids=()
cleanup() {
  for pid in "${pids[@]}"; do kill -KILL "$pid" 2> /dev/null || true; done
  rm -rf "$work"
}
trap cleanup EXIT
cd "$work"

levels() {  # N: a list of N levels
  local list=""
  for ((i = 0; i < $1; i++)); do list+="${list:+, }\"levels/level_01.txt\""; done
  echo "$list"
}
echo "{ \"trial_time\": 3, \"levels\": [$(levels 12)] }" > short.json
echo "{ \"trial_time\": 3, \"levels\": [$(levels 400)] }" > long.json

# A script's background jobs ignore SIGINT; this one must take Ctrl-C as a terminal gives it.
start() {  # name config [env prefix...]
  local name=$1 config=$2
  shift 2
  "$@" "$veldra" headless=1 demo=1 config="$config" verbose=1 log_output_file="$name.log" \
    2> "$name.err" &
  pids+=($!)
}
start killed long.json
start interrupted long.json env --default-signal=INT
start first short.json
start second short.json
killed=${pids[0]} interrupted=${pids[1]}

# The autosave a process named on stderr, once it holds a saved trial.
autosave_of() {
  sed -n 's/.*The results of each trial are kept in "\(.*\)" as the session goes on\./\1/p' "$1.err"
}
wait_for_a_record() {  # name
  for ((i = 0; i < 3000; i++)); do
    if grep -q "Saved the result of level" "$1.err" 2> /dev/null; then return; fi
    sleep 0.01
  done
  echo "$1 saved nothing"; cat "$1.err"; exit 1
}
wait_for_a_record killed
wait_for_a_record interrupted
kill -KILL "$killed"
kill -INT "$interrupted"

statuses=()
set +e
for pid in "${pids[@]}"; do
  wait "$pid"
  statuses+=($?)
done
set -e
[ "${statuses[0]}" -eq 137 ]
[ "${statuses[1]}" -eq 130 ] || { echo "Ctrl-C: status ${statuses[1]}"; cat interrupted.err; exit 1; }
grep -q "Stopped by SIGINT (Ctrl-C)." interrupted.log
[ "${statuses[2]}" -eq 0 ] && [ "${statuses[3]}" -eq 0 ]
pids=()

header=$(head -n 1 "$(autosave_of first)")
names=()
for name in killed interrupted first second; do
  csv=$(autosave_of "$name")
  names+=("$csv")
  [ "$(head -n 1 "$csv")" = "$header" ]
  # Every line whole: 33 cells, and the file ends with a line break.
  awk -F';' 'NF != 33 { exit 1 }' "$csv" || { echo "$csv has a broken line"; exit 1; }
  [ -z "$(tail -c 1 "$csv")" ]
  records=$(($(wc -l < "$csv") - 1))
  saved=$(grep -c "Saved the result of level" "$name.err" || true)
  if [ "$name" = killed ]; then
    # Killed between its append and its log line at worst.
    [ "$records" -ge "$saved" ] && [ "$records" -le $((saved + 1)) ]
  else
    [ "$records" -eq "$saved" ] || { echo "$name: $records lines, $saved saved"; exit 1; }
  fi
done
[ "$(wc -l < "$(autosave_of first)")" -eq 13 ]
[ "$(wc -l < "$(autosave_of interrupted)")" -lt 401 ]
# Four sessions, four files of their own, and nothing left half-written.
[ "$(printf '%s\n' "${names[@]}" | sort -u | wc -l)" -eq 4 ]
[ "$(ls session-DEMO_USER-*.csv | wc -l)" -eq 4 ]
[ -z "$(ls | grep -v -e '\.csv$' -e '\.log$' -e '\.err$' -e '\.json$')" ]
echo "concurrent sessions: ok"
