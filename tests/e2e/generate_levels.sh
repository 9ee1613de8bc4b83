#!/usr/bin/env bash
# The level-set generator from the shell: reproducible by seed, clear failures.
set -euo pipefail
veldra=$1
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
cd "$work"

"$veldra" generate_levels=level_generator_example.json output_dir=out seed=7
"$veldra" generate_levels=level_generator_example.json output_dir=again seed=7
"$veldra" generate_levels=level_generator_example.json output_dir=other seed=8
[ "$(ls out | wc -l)" -eq 5 ]
diff -r out again
! diff -q out/level_001.txt other/level_001.txt >/dev/null
grep -q p out/level_001.txt
[ "$(head -1 out/level_001.txt | tr -d '\n' | wc -c)" -eq 24 ]

echo '{ "width": 2,' > bad.json
status=0; "$veldra" generate_levels=bad.json output_dir=bad 2> bad.err || status=$?
[ "$status" -eq 1 ]; grep -q "Failed to read generator configurations." bad.err

echo '{"width": 2, "height": 2, "count": 1, "seed": 1, "monster_amounts": [1], "food_amounts": [1], "human_amounts": [1], "sand_amounts": [0]}' > tiny.json
status=0; "$veldra" generate_levels=tiny.json output_dir=tiny 2> tiny.err || status=$?
[ "$status" -eq 1 ]; grep -q "tiny.json" tiny.err

status=0; "$veldra" generate_levels=level_generator_example.json 2> nodir.err || status=$?
[ "$status" -eq 2 ]; grep -q "output_dir" nodir.err
status=0; "$veldra" generate_levels=level_generator_example.json output_dir=x seed=abc 2>/dev/null || status=$?
[ "$status" -eq 2 ]
echo "generate levels: ok"
