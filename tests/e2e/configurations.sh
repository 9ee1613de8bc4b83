#!/usr/bin/env bash
# Loading the configuration at start-up: the base file, a custom overlay, and a broken base.
set -euo pipefail
veldra=$1
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
cd "$work"

"$veldra" headless=1 frames=3 log_output_file=run.log lang=en
grep -q 'Loaded base configurations from ".*datafiles/configurations.json"' run.log
grep -q "No custom configurations were loaded, because none were specified. Only the base configurations will be in effect." run.log

# A custom file in the working directory, named without ".json".
echo '{"trial_time": 30} // half-length trials' > fast.json
"$veldra" headless=1 frames=3 log_output_file=custom.log config=fast
grep -q 'Loaded custom configurations from "fast.json". All fields that are defined in this configuration were overwritten over the base configurations.' custom.log

# A broken base file, through a project directory.
mkdir -p project/datafiles/localization
cp "$(dirname "$veldra")"/datafiles/localization/en.ini project/datafiles/localization/
echo '{"trial_time": 60,' > project/datafiles/configurations.json
VeldraProjectDir="$work/project" "$veldra" headless=1 frames=3 log_output_file=broken.log 2> broken.err
grep -q "Error: Failed to read the configuration file \"$work/project/datafiles/configurations.json\"." broken.log
grep -q "Error: Failed to load main configs from \"$work/project/datafiles/configurations.json\"." broken.log
grep -q "Failed to load main configs" broken.err
echo "configurations: ok"
