#!/bin/bash
# Speed of the ASCII matrix and OYO McSEIS imports, best of five runs each:
# - a 2000-trace x 1000-sample comma-separated matrix, selected and
#   converted, within 3 times what wc -w takes on the same file;
# - 99 OYO records of 24 channels x 5400 long-integer samples (50 MB of SU
#   traces), within 2 times what cp takes for the output bytes.
# usage: text_importers_speed.sh TRACEFOLD_RUN MAKE_RECORDS
set -eu
run=$1 make=$2
work=$(mktemp -d /tmp/tracefold-text-speed-XXXXXX)
trap 'rm -rf "$work"' EXIT
source "$(dirname "$0")/speed_support.sh"
failed=0 passed=0
check() { # NAME TIME_NS LIMIT_NS
  if [ "$2" -gt "$3" ]; then echo "$1: too slow"; failed=$((failed + 1)); else passed=$((passed + 1)); fi
}

matrix=$("$make" ascii "$work/ascii" 1 2000 1000)
cat >"$work/ascii.tfs" <<SCRIPT
show ASCII2SU
set ASCII2SU.Text3 "1000"
set ASCII2SU.Text4 "250"
dialog "$matrix"
click ASCII2SU.Command1
click ASCII2SU.Command3
SCRIPT
ascii() { rm -f "$work/ascii/rec001.SU"; "$run" "$work/ascii.tfs"; }
ascii | grep -q '"Conversion OK! ' || { echo "the ASCII import did not finish: 0 passed, 1 failed"; exit 1; }
ascii_ns=$(best ascii)
wc_ns=$(best wc -w "$matrix")
echo "ASCII import $((ascii_ns / 1000000)) ms, wc -w of $(wc -c <"$matrix") bytes $((wc_ns / 1000000)) ms"
check "ASCII import slower than 3x wc -w" "$ascii_ns" $((3 * wc_ns))

"$make" oyo "$work/oyo" 99 24 5400 >/dev/null
cat >"$work/oyo.tfs" <<SCRIPT
show oyo
dialog "$work/oyo/ $(cd "$work/oyo" && ls | tr '\n' ' ')"
click oyo.Command3
set oyo.Text2 "$work/line.su"
click oyo.Command1
SCRIPT
oyo() { rm -f "$work/line.su"; "$run" "$work/oyo.tfs"; }
oyo | grep -q '"Conversion done"' || { echo "the OYO import did not finish: $passed passed, $((failed + 1)) failed"; exit 1; }
oyo_ns=$(best oyo)
copy() { rm -f "$work/copy.su"; cp "$work/line.su" "$work/copy.su"; }
cp_ns=$(best copy)
echo "OYO import $((oyo_ns / 1000000)) ms, cp of $(wc -c <"$work/line.su") bytes $((cp_ns / 1000000)) ms"
check "OYO import slower than 2x cp" "$oyo_ns" $((2 * cp_ns))

echo "$passed passed, $failed failed"
[ "$failed" -eq 0 ]
