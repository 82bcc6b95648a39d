#!/bin/bash
# Builds the program, converts generated field records of the bundled
# recorder formats to SU through the headless runner, and starts the
# desktop program where there is a display.
set -eu
cd "$(dirname "$0")/.."
bash scripts/build.sh
demo=build/demo
rm -rf "$demo" && mkdir -p "$demo"

build/make-records es1225 "$demo/es1225" 2 >/dev/null
cat >"$demo/es1225.tfs" <<SCRIPT
click Utility.Option4
dialog "$PWD/$demo/es1225/ rec001.dat rec002.dat"
click es1225.Command3
set es1225.Text2 "$PWD/$demo/es1225.su"
click es1225.Command1
SCRIPT
build/tracefold-run "$demo/es1225.tfs" >"$demo/es1225.jsonl"
echo "ES-1225, 2 records of 12 channels: $demo/es1225.su"
build/su-info "$demo/es1225.su"

build/make-records abem "$demo/abem" 2 >/dev/null
cat >"$demo/abem.tfs" <<SCRIPT
click Utility.Option5
dialog "$PWD/$demo/abem/ $(cd "$demo/abem" && echo *)"
click abem.Command4
set abem.Text2 "$PWD/$demo/abem.su"
click abem.Command1
SCRIPT
build/tracefold-run "$demo/abem.tfs" >"$demo/abem.jsonl"
echo "ABEM Mark 3, 2 records: $demo/abem.su"
build/su-info "$demo/abem.su"

# Each subsystem's own demonstration.
for part in scripts/demo_*.sh; do
  [ -e "$part" ] && source "$part"
done

if [ -n "${DISPLAY:-}${WAYLAND_DISPLAY:-}" ] && [ -x build/tracefold ]; then
  echo "Starting the desktop program"
  exec build/tracefold
fi
echo "No display here: on a desktop, start the program with build/tracefold;"
echo "on a machine without one, under a virtual display: xvfb-run build/tracefold"
