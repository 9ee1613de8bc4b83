#!/usr/bin/env bash
# Auto runs from the shell: the CSV's shape and order, reproducibility, and that jobs, shards
# with merge, and an interrupted-then-resumed run all give the single-process bytes.
set -euo pipefail
veldra=$1
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
cd "$work"
data=$(dirname "$veldra")/datafiles

# Options of lengths 2, 1, 1, 1, 3 and short trials.
cat > small.json <<'JSON'
{"options_openness": [-1, 1], "options_conscientiousness": [0], "options_extraversion": [0],
 "options_agreeableness": [0], "options_neuroticism": [-1, 0, 1], "trial_time": 5}
JSON
cp "$data/levels/level_01.txt" a.txt
cp "$data/levels/level_02.txt" b.txt
echo '{"levels": ["a.txt", "b.txt"], "num_runs_per_permutation": 2}' > runs.json
run() { "$veldra" config=small auto_run_config=runs.json "$@"; }

run auto_run_output=one.csv auto_run_seed=5 > summary.txt
grep -q "Auto run done: 24 trials" summary.txt
[ "$(wc -l < one.csv)" -eq 25 ]
head -1 one.csv | grep -q '^config_version;game_version;level_info.filename;'
[ "$(cut -d';' -f3 one.csv | tail -n +2 | uniq | tr '\n' ' ')" = "a.txt b.txt " ]
[ "$(cut -d';' -f3 one.csv | grep -c a.txt)" -eq 12 ]

run auto_run_output=again.csv auto_run_seed=5 > /dev/null
cmp one.csv again.csv
run auto_run_output=other.csv auto_run_seed=6 > /dev/null
! cmp -s one.csv other.csv

run auto_run_output=jobs.csv auto_run_seed=5 auto_run_jobs=2 > /dev/null
cmp one.csv jobs.csv
[ -z "$(ls | grep part- || true)" ]

run auto_run_output=s1.csv auto_run_seed=5 auto_run_shard=1/3 > /dev/null
run auto_run_output=s2.csv auto_run_seed=5 auto_run_shard=2/3 > /dev/null
run auto_run_output=s3.csv auto_run_seed=5 auto_run_shard=3/3 > /dev/null
"$veldra" auto_run_merge=s1.csv,s2.csv,s3.csv auto_run_output=merged.csv > /dev/null
cmp one.csv merged.csv

# A file cut inside a line, as a kill leaves it, resumes to the same bytes.
head -c "$(( $(head -n 10 one.csv | wc -c) + 17 ))" one.csv > resumed.csv
cp one.csv.fingerprint resumed.csv.fingerprint
run auto_run_output=resumed.csv auto_run_seed=5 auto_run_resume=1 > /dev/null
cmp one.csv resumed.csv

# A real Ctrl-C: exit status 130, a valid prefix, then a resume to the same bytes. A script's
# background job ignores SIGINT (and the program keeps it so); env gives it back, as a terminal
# would.
echo '{"levels": ["a.txt", "b.txt"], "num_runs_per_permutation": 400}' > long.json
"$veldra" config=small auto_run_config=long.json auto_run_output=full.csv auto_run_seed=9 > /dev/null
env --default-signal=INT "$veldra" config=small auto_run_config=long.json auto_run_output=cut.csv \
  auto_run_seed=9 > /dev/null 2>&1 &
pid=$!
for _ in $(seq 100); do [ "$(wc -l < cut.csv 2>/dev/null || echo 0)" -gt 20 ] && break; sleep 0.05; done
kill -INT "$pid"
status=0; wait "$pid" || status=$?
[ "$status" -eq 130 ]
lines=$(wc -l < cut.csv)
[ "$lines" -lt 4801 ]
cmp <(head -n "$lines" full.csv) cut.csv
"$veldra" config=small auto_run_config=long.json auto_run_output=cut.csv auto_run_seed=9 auto_run_resume=1 > /dev/null
cmp full.csv cut.csv

echo '{"levels": ["a.txt"], "num_runs_per_permutation": 0}' > none.json
"$veldra" auto_run_config=none.json auto_run_output=none.csv > /dev/null
[ "$(wc -l < none.csv)" -eq 1 ]

# Failures: their message and exit status.
expect() {  # expect STATUS TEXT command...
  local want=$1 text=$2; shift 2
  local status=0
  "$@" > out.txt 2> err.txt || status=$?
  [ "$status" -eq "$want" ] || { echo "exit $status, wanted $want: $*"; cat err.txt; exit 1; }
  grep -qF "$text" err.txt || { echo "missing \"$text\": $*"; cat err.txt; exit 1; }
}
expect 1 "Failed to read auto-run configurations." "$veldra" auto_run_config=missing.json auto_run_output=x.csv
echo '{"levels": ' > broken.json
expect 1 "Failed to read auto-run configurations." "$veldra" auto_run_config=broken.json auto_run_output=x.csv
echo '{"levels": ["nowhere.txt"], "num_runs_per_permutation": 1}' > nolevel.json
expect 1 'Failed to read level from file "nowhere.txt".' "$veldra" auto_run_config=nolevel.json auto_run_output=x.csv
expect 1 "Failed to open file for writing." "$veldra" auto_run_config=runs.json auto_run_output=/nonexistent/x.csv
expect 2 "auto_run_output" "$veldra" auto_run_config=runs.json
expect 2 "auto_run_seed" "$veldra" auto_run_config=runs.json auto_run_output=x.csv auto_run_seed=abc
expect 2 "auto_run_shard" "$veldra" auto_run_config=runs.json auto_run_output=x.csv auto_run_shard=4/3
# Numbers that are no numbers of their kind, and switches that are no switches.
for bad in auto_run_seed=nan auto_run_seed=inf auto_run_seed=1.5 auto_run_seed=1e300; do
  expect 2 "${bad%%=*}" run auto_run_output=x.csv "$bad"
done
for bad in 1/inf 1e30/1e30 18446744073709551615/18446744073709551615 \
    9223372036854775808/9223372036854775808 0/3 -1/3 1/25; do
  expect 2 "auto_run_shard=$bad" run auto_run_output=x.csv auto_run_shard="$bad"
done
expect 2 "auto_run_resume=yes" run auto_run_output=one.csv auto_run_resume=yes
expect 2 "auto_run_jobs=0" run auto_run_output=x.csv auto_run_jobs=0
cmp one.csv again.csv

# An output that is one of the run's inputs is refused before anything is written.
cp runs.json runs.bak
expect 2 'would overwrite' run auto_run_output=runs.json
expect 2 'would overwrite' run auto_run_output=./a.txt
cmp runs.json runs.bak

# A full disk is an error, not a quiet exit 0.
expect 1 'Failed to write "/dev/full": No space left on device.' run auto_run_output=/dev/full
[ ! -e /dev/full.fingerprint ]

# Resume continues only the run that wrote the file.
cp one.csv other_seed.csv; cp one.csv.fingerprint other_seed.csv.fingerprint
expect 1 "written by another run" run auto_run_output=other_seed.csv auto_run_seed=6 auto_run_resume=1
cmp one.csv other_seed.csv
cp one.csv nofp.csv
expect 1 "nofp.csv.fingerprint" run auto_run_output=nofp.csv auto_run_seed=5 auto_run_resume=1
(head -n 5 one.csv; echo "not a record"; tail -n +6 one.csv) > garbage.csv
cp one.csv.fingerprint garbage.csv.fingerprint
expect 1 'line 6 of "garbage.csv" is not a trial record' run auto_run_output=garbage.csv auto_run_seed=5 auto_run_resume=1
(cat one.csv; tail -n 3 one.csv) > longer.csv; cp one.csv.fingerprint longer.csv.fingerprint
expect 1 "holds 27 runs, but this run has only 24" run auto_run_output=longer.csv auto_run_seed=5 auto_run_resume=1

# Merge refuses to empty a part, parts of other runs, gaps and unfinished parts, and leaves an
# existing output as it was when it refuses.
cp s1.csv s1.bak
expect 1 "would be emptied" "$veldra" auto_run_merge=s1.csv,s2.csv,s3.csv auto_run_output=s1.csv
cmp s1.csv s1.bak
echo keep > kept.csv
expect 1 "none missing" "$veldra" auto_run_merge=s1.csv,s3.csv auto_run_output=kept.csv
run auto_run_output=o2.csv auto_run_seed=6 auto_run_shard=2/3 > /dev/null
expect 1 "belongs to another run" "$veldra" auto_run_merge=s1.csv,o2.csv,s3.csv auto_run_output=kept.csv
head -n 3 s2.csv > short2.csv; cp s2.csv.fingerprint short2.csv.fingerprint
expect 1 "Finish it first" "$veldra" auto_run_merge=s1.csv,short2.csv,s3.csv auto_run_output=kept.csv
[ "$(cat kept.csv)" = keep ]

# Parallel parts of an output whose name begins with a space still join.
run "auto_run_output= spaced.csv" auto_run_seed=5 auto_run_jobs=2 > /dev/null
cmp one.csv " spaced.csv"

# A configuration the user asked for and that does not load stops the batch.
expect 1 "Failed to load custom configs" "$veldra" config=nowhere auto_run_config=runs.json auto_run_output=x.csv
# A game speed at which a trial would never end is refused at load.
echo '{"game_speed": 1e-300}' > still.json
expect 1 'variable "game_speed" must be from 0.01 to 1000' "$veldra" config=still auto_run_config=runs.json auto_run_output=x.csv

mkdir -p project/datafiles && echo '{' > project/datafiles/configurations.json
export VeldraProjectDir="$work/project"
expect 1 "Failed to load main configs" "$veldra" auto_run_config=runs.json auto_run_output=x.csv
unset VeldraProjectDir
echo "auto run: ok"
