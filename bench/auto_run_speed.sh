#!/usr/bin/env bash
# Prints the auto runner's figures: trials per second for the example batch with one and with
# two worker processes (and checks both give the same bytes), and the peak memory of a run of
# 2,187 trials next to that of a 243-trial run, so growth per trial would show.
#
#   bash bench/auto_run_speed.sh [path/to/veldra]
#
# Needs GNU time (/usr/bin/time, Debian package "time") for the memory figures.
set -euo pipefail
cd "$(dirname "$0")/.."
veldra="$(realpath "${1:-build/veldra}")"
[[ -x "$veldra" ]] || { echo "no program at $veldra; build first (bash scripts/setup.sh)" >&2; exit 1; }
[[ -x /usr/bin/time ]] || { echo "GNU time is missing: apt-get install time" >&2; exit 1; }

work="$(mktemp -d)"
trap 'rm -rf "$work"' EXIT

# Runs the program on an auto-run file; prints "<seconds> <peak kB>".
timed_run() {
    local config="$1" output="$2"
    shift 2
    local start end
    start=$(date +%s.%N)
    /usr/bin/time -f "%M" -o "$work/rss" \
        "$veldra" auto_run_config="$config" auto_run_output="$output" auto_run_seed=1 "$@" >"$work/log" 2>&1
    end=$(date +%s.%N)
    echo "$(calc "$end - $start") $(cat "$work/rss")"
}

# Arithmetic on decimals without depending on bc.
calc() { awk "BEGIN { print $1 }"; }

trials_in() { echo $(($(wc -l <"$1") - 1)); }

echo "== example batch (datafiles/auto_run_example.json) =="
declare -A seconds
for jobs in 1 2; do
    best=""
    for repeat in 1 2 3; do
        read -r s _ < <(timed_run auto_run_example.json "$work/jobs$jobs.csv" auto_run_jobs=$jobs)
        rm -f "$work/jobs$jobs.csv.progress"
        if [[ -z "$best" ]] || (($(calc "$s < $best"))); then best=$s; fi
        [[ $repeat -lt 3 ]] && rm -f "$work/jobs$jobs.csv"
    done
    seconds[$jobs]=$best
    trials=$(trials_in "$work/jobs$jobs.csv")
    printf 'auto_run_jobs=%d: %d trials in %.2f s (best of 3), %.0f trials/s\n' \
        "$jobs" "$trials" "$best" "$(calc "$trials / $best")"
done
if cmp -s "$work/jobs1.csv" "$work/jobs2.csv"; then
    echo "outputs identical"
else
    echo "OUTPUTS DIFFER" >&2
    exit 1
fi
printf 'speed-up with 2 jobs: %.2fx\n' "$(calc "${seconds[1]} / ${seconds[2]}")"

echo "== peak memory, one process =="
for levels in 1 9; do
    list=$(for n in $(seq 1 "$levels"); do printf '"levels/level_%02d.txt",' "$n"; done)
    printf '{ "levels": [%s], "num_runs_per_permutation": 1 }\n' "${list%,}" >"$work/levels$levels.json"
    read -r s kb < <(timed_run "$work/levels$levels.json" "$work/levels$levels.csv")
    printf '%d trials (levels 01-%02d): peak resident memory %d kB (%.1f MiB), %.2f s\n' \
        "$(trials_in "$work/levels$levels.csv")" "$levels" "$kb" "$(calc "$kb / 1024")" "$s"
done
