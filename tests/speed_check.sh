#!/bin/bash
# Converting 99 ES-1225 records of 48 channels x 4000 samples takes at most
# 3 times what cp takes for as many bytes (best of five runs each).
# usage: speed_check.sh TRACEFOLD_RUN MAKE_RECORDS
set -eu
run=$1 make=$2
work=$(mktemp -d /tmp/tracefold-speed-XXXXXX)
trap 'rm -rf "$work"' EXIT
"$make" es1225 "$work/in" 99 48 4000 >/dev/null
cat >"$work/line.tfs" <<SCRIPT
click Utility.Option4
dialog "$work/in/ $(cd "$work/in" && ls | tr '\n' ' ')"
click es1225.Command3
set es1225.Text5 "48"
set es1225.Text4 "4000"
set es1225.Text2 "$work/line.su"
click es1225.Command1
SCRIPT
source "$(dirname "$0")/../bench/speed_support.sh"
run_within_of_cp 3 "$work/line.su" "Conversion done" "$run" "$work/line.tfs"
