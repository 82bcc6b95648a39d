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
best() { # the best time in ns of five runs of "$@"
  b=0
  for i in 1 2 3 4 5; do
    t0=$(date +%s%N); "$@" >/dev/null; d=$(($(date +%s%N) - t0))
    if [ $b -eq 0 ] || [ $d -lt $b ]; then b=$d; fi
  done
  echo $b
}
convert() { rm -f "$work/line.su"; "$run" "$work/line.tfs"; }
copy() { rm -f "$work/copy.su"; cp "$work/line.su" "$work/copy.su"; }
convert_ns=$(best convert)
convert | grep -q '"OK, Conversion done"' || { echo "the conversion did not finish: 0 passed, 1 failed"; exit 1; }
cp_ns=$(best copy)
echo "conversion $((convert_ns / 1000000)) ms, cp of $(wc -c <"$work/line.su") bytes $((cp_ns / 1000000)) ms"
if [ "$convert_ns" -gt $((2 * cp_ns)) ]; then echo "conversion slower than 2x cp: 0 passed, 1 failed"; exit 1; fi
echo "1 passed, 0 failed"
