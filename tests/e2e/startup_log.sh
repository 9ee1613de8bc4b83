#!/usr/bin/env bash
# The start-up sequence writes its lines to the log file and exits 0; bad input never crashes.
set -euo pipefail
veldra=$1
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
cd "$work"

"$veldra" headless=1 frames=3 log_output_file=run.log lang=de
for line in "Program started." "Build version: 1.0.0.0" "Build configuration: " "Debug mode: true" "os_type: " "os_browser: "; do
  grep -qF "$line" run.log || { echo "missing log line: $line"; cat run.log; exit 1; }
done
# Timestamps lead every line: 2024_03_07_09_05_41
grep -qE '^[0-9]{4}_[0-9]{2}_[0-9]{2}_[0-9]{2}_[0-9]{2}_[0-9]{2} Program started\.$' run.log
# The wall clock's date, which start-up hands to the runtime's clock, not the stand-in of tests.
! grep -q '^1970_01_01_00_00_00 ' run.log
! grep -q "Failed to load localization" run.log
# The system as its users name it, not the kernel's text.
if [ -r /etc/os-release ]; then
  expected=$(. /etc/os-release && echo "${PRETTY_NAME:-}")
  [ -z "$expected" ] || grep -qF "os_type: $expected" run.log || { echo "os_type is not \"$expected\""; grep os_type run.log; exit 1; }
fi
# A second call of a once-only initialiser would print its callers; the log of a normal start
# has none.
! grep -q "called more than once" run.log

# A language without a file is reported, the program still ends normally.
"$veldra" headless=1 frames=2 log_output_file=xx.log lang=xx
grep -q 'Error: Failed to load localization file ".*localization/xx.ini"\.' xx.log

# An unwritable log file is said once and leaves the program running; unknown parameters are
# ignored.
"$veldra" headless=1 frames=2 log_output_file=/nonexistent/dir/x.log bogus=1 stray 2> err.txt
[ "$(grep -c "Cannot write the log file log_output_file=/nonexistent/dir/x.log: No such file or directory" err.txt)" -eq 1 ]

# A malformed debug settings file is no error.
mkdir -p debug && echo '{ broken' > debug/debug_settings.json
"$veldra" headless=1 frames=1 log_output_file=d.log lang=en
grep -q "Program started." d.log

"$veldra" --version | grep -qx "1.0.0.0"
"$veldra" --help | grep -q "log_output_file"
if "$veldra" frames=abc 2>/dev/null; then echo "frames=abc should fail"; exit 1; fi
echo "startup log: ok"
