#!/bin/bash
# The generic binary panel converts a line of 50 MB (12 records of 48
# channels x 22000 int32 samples behind 3600- and 240-byte headers) in at
# most 2 times what cp takes for the bytes it writes (best of five runs each).
# usage: generic_binary_speed.sh TRACEFOLD_RUN MAKE_RECORDS
set -eu
run=$1 make=$2
work=$(mktemp -d /tmp/tracefold-binary-speed-XXXXXX)
trap 'rm -rf "$work"' EXIT
"$make" binary "$work/in" 12 48 22000 3600 240 i32 >/dev/null
cat >"$work/line.tfs" <<SCRIPT
click Utility.Option7
dialog "$work/in/ $(cd "$work/in" && ls | tr '\n' ' ')"
click sisforme.Command5
set sisforme.Text3 "48"
set sisforme.Text4 "22000"
set sisforme.Text7 "3600"
set sisforme.Text8 "240"
set sisforme.Text2 "$work/line.su"
click sisforme.Command1
SCRIPT
source "$(dirname "$0")/speed_support.sh"
run_within_of_cp 2 "$work/line.su" "OK, Conversion done" "$run" "$work/line.tfs"
