#!/usr/bin/env bash
# A UI script's screenshot that cannot be written fails the run, as screenshot= does: a
# demonstration or windowed test that meant to keep a picture and has none has not done its job.
# Skipped (status 77) without Xvfb or a display, unless VELDRA_REQUIRE_DISPLAY is set.
set -euo pipefail
veldra=$1
source "$(dirname "$0")/support/own_display.sh"
work=$(mktemp -d)
cd "$work"
start_own_display_or_skip

# A byte order mark in front, as some editors save UTF-8.
printf '\xEF\xBB\xBFwait DEVELOPER MENU\nscreenshot /nonexistent/dir/menu.png\nframes 2\nquit\n' > bad.ui
status=0
"$veldra" lang=en config= ui_script=bad.ui frames=600 log_output_file=bad.log 2> bad.err || status=$?
[ "$status" -eq 1 ] || { echo "an unwritable screenshot ended with status $status"; cat bad.err; exit 1; }
grep -q 'UI script, line 2 (screenshot /nonexistent/dir/menu.png): the screenshot "/nonexistent/dir/menu.png" was not saved' bad.log

printf 'wait DEVELOPER MENU\nscreenshot menu.png\nframes 2\nquit\n' > good.ui
"$veldra" lang=en config= ui_script=good.ui frames=600 log_output_file=good.log
[ -s menu.png ]
echo "windowed ui script: ok"
