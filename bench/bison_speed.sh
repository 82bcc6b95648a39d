#!/bin/bash
# A line of Bison 5000 records that makes 50 MB of SU converts within 2 times
# what cp takes for the output's bytes (best of five each).
# usage: bison_speed.sh TRACEFOLD_RUN MAKE_RECORDS
set -eu
run=$1 make_records=$2
source "$(dirname "$0")/speed_support.sh"
work=$(mktemp -d /tmp/tracefold-field-speed-XXXXXX)
trap 'rm -rf "$work"' EXIT
"$make_records" bison "$work/line" 26 24 20000 >/dev/null
names=$(cd "$work/line" && echo *.dat)
cat >"$work/line.tfs" <<SCRIPT
click Utility.Option14
dialog "$work/line/ $names"
click Bison.Command5
set Bison.Text2 "$work/line.su"
click Bison.Command1
SCRIPT
run_within_of_cp 2 "$work/line.su" "OK, Conversion done" "$run" "$work/line.tfs"
