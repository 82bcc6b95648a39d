#!/bin/bash
# Converting the public EKKO DT1 record of 531 traces x 1500 points takes at
# most 2 times what cp takes for the output's bytes. One run converts the
# record five times, and cp copies the five outputs, so that neither the
# program's start nor cp's weighs on the comparison (best of five each).
# usage: radar_speed_check.sh TRACEFOLD_RUN SHARED_DATA
set -eu
run=$1 data=$2
record="$data/dt1/gprpy_ComOffs/XLINE00.DT1"
if [ ! -e "$record" ]; then echo "no public DT1 sample: skipped"; exit 0; fi
work=$(mktemp -d /tmp/tracefold-radar-speed-XXXXXX)
trap 'rm -rf "$work"' EXIT
mkdir "$work/out" "$work/copies"
{
  echo "show DT1"
  echo "dialog \"$record\""
  echo "click DT1.Command1"
  for n in 1 2 3 4 5; do
    echo "set DT1.Text2 \"$work/out/line$n.su\""
    echo "click DT1.Command3"
  done
} >"$work/line.tfs"
source "$(dirname "$0")/../bench/speed_support.sh"
convert() { rm -f "$work"/out/*; "$run" "$work/line.tfs"; }
copy() { rm -f "$work"/copies/*; cp "$work"/out/* "$work/copies/"; }
convert_ns=$(best convert)
[ "$(convert | grep -c '"OK, Conversion done"')" = 5 ] || { echo "the conversions did not finish: 0 passed, 1 failed"; exit 1; }
cp_ns=$(best copy)
echo "5 conversions $((convert_ns / 1000000)) ms, cp of $(cat "$work"/out/* | wc -c) bytes $((cp_ns / 1000000)) ms"
if [ "$convert_ns" -gt $((2 * cp_ns)) ]; then echo "conversion slower than 2x cp: 0 passed, 1 failed"; exit 1; fi
echo "1 passed, 0 failed"
