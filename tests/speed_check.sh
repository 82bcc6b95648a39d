#!/bin/bash
# The conversion of 99 ES-1225 records of 48 channels x 4000 samples stays
# within 3 times the time that cp takes for as many bytes. Best of three each.
# usage: speed_check.sh TRACEFOLD_RUN MAKE_RECORDS
set -eu
run=$1 make=$2
work=$(mktemp -d /tmp/tracefold-speed-XXXXXX)
trap 'rm -rf "$work"' EXIT
"$make" es1225 "$work/in" 99 48 4000 >/dev/null
names=$(cd "$work/in" && ls | tr '\n' ' ')
cat >"$work/line.tfs" <<SCRIPT
click Utility.Option4
dialog "$work/in/ $names"
click es1225.Command3
set es1225.Text5 "48"
set es1225.Text4 "4000"
set es1225.Text2 "$work/line.su"
click es1225.Command1
SCRIPT
now() { date +%s%N; }
best() { # best time in ns of three runs of "$@"
  b=0
  for i in 1 2 3; do
    t0=$(now); "$@" >/dev/null; t1=$(now)
    d=$((t1 - t0)); if [ $b -eq 0 ] || [ $d -lt $b ]; then b=$d; fi
  done
  echo $b
}
convert() { rm -f "$work/line.su"; "$run" "$work/line.tfs"; }
copy() { rm -f "$work/copy.su"; cp "$work/line.su" "$work/copy.su"; }
convert_ns=$(best convert)
grep -q '"Conversion done"' <<EOF2 || { echo "the conversion did not finish: 0 passed, 1 failed"; exit 1; }
$("$run" "$work/line.tfs")
EOF2
cp_ns=$(best copy)
size=$(wc -c <"$work/line.su")
echo "conversion $((convert_ns / 1000000)) ms, cp of $size bytes $((cp_ns / 1000000)) ms"
if [ "$convert_ns" -le $((3 * cp_ns)) ]; then
  echo "1 passed, 0 failed"
else
  echo "conversion slower than 3x cp: 0 passed, 1 failed"
  exit 1
fi
