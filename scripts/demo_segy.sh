# SEG-Y records into SU through the SEG-Y import panel, and the trial
# conversion drawn as wiggles. Sourced by demo.sh from the checkout's top
# with $demo set. Seismic Unix is not installed: stand-ins for SEGYREAD
# (the traces behind the 3600 header bytes) and SEGYCLEAN (a copy) sit in
# the program's folder.
segy_app="$PWD/$demo/segy_app"
segy_data="$PWD/../shared/data/segy"
mkdir -p "$segy_app/bin"
printf '#!/bin/sh\nfor a in "$@"; do case $a in tape=*) f=${a#tape=};; esac; done\ntail -c +3601 "$f"\n' >"$segy_app/bin/SEGYREAD"
cp "$segy_app/bin/SEGYREAD" "$segy_app/SEGYREAD"
printf '#!/bin/sh\nexec cat\n' >"$segy_app/SEGYCLEAN"
chmod +x "$segy_app/bin/SEGYREAD" "$segy_app/SEGYREAD" "$segy_app/SEGYCLEAN"
rm -f "$demo/segy_line.su"
# The little- and big-endian samples selected together: the big-endian one
# (second) proposes its swapped sample count and interval. Test converts the
# first record and draws 24 of its traces; one record is then converted.
cat >"$demo/segy.tfs" <<SCRIPT
click Utility.Option2
dialog "$segy_data/ Format5lsb.sgy Format1msb.sgy"
click SEGY.Command1
set SEGY.Text5 24
click SEGY.Command5
set SEGY.Text13 0.5
dump-picture SEGY.ecran
save-picture SEGY.ecran "$PWD/$demo/segy_display.png"
move SEGY.ecran 45 300
set SEGY.Text11 1
set SEGY.Text4 0
set SEGY.Text2 "$PWD/$demo/segy_line.su"
click SEGY.Command2
dump SEGY
SCRIPT
build/tracefold-run --shell run --clock real --max-seconds 30 --app-dir "$segy_app" "$demo/segy.tfs" >"$demo/segy.jsonl"
sleep 1
echo "SEG-Y Format5lsb.sgy (IEEE floats) to SU, trial drawn in $demo/segy_display.png: $demo/segy_line.su"
build/su-info "$demo/segy_line.su"
