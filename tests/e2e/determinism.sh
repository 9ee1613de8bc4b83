#!/usr/bin/env bash
# Guards the research output: a fixed batch over every shipped level must give the same CSV
# bytes as the stored digest. A deliberate change of results updates EXPECTED once, in a commit
# that says why; anything else that moves this digest has changed what researchers get.
set -euo pipefail
veldra=$1
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
cd "$work"

EXPECTED=51bd1e46b9f81eb1ec437077e55f05fbcd08d23ce4050daf1c43df5f3a7974fc

# 2 x 2 x 3 trait permutations, two runs each, on all ten levels: 240 trials.
cat > traits.json <<'JSON'
{"options_openness": [-1, 1], "options_conscientiousness": [0], "options_extraversion": [0, 1],
 "options_agreeableness": [0], "options_neuroticism": [-1, 0, 1]}
JSON
levels=$(printf '"levels/level_%02d.txt",' $(seq 10))
echo "{\"levels\": [${levels%,}], \"num_runs_per_permutation\": 2}" > runs.json

"$veldra" config="$work/traits.json" auto_run_config=runs.json auto_run_output=out.csv \
  auto_run_seed=11 > /dev/null
[ "$(wc -l < out.csv)" -eq 241 ]
actual=$(sha256sum out.csv | cut -d' ' -f1)
if [ "$actual" != "$EXPECTED" ]; then
  echo "determinism: the fixed batch's CSV changed"
  echo "  expected $EXPECTED"
  echo "  actual   $actual"
  exit 1
fi
