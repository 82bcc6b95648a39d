# Radar records to SU: one public sample of each radar format (GSSI DZT,
# EKKO DT1 with its .HD, RAMAC .rd3 with its .rad), each proposed from its
# own header and converted through the main panel's radar frame.
radar_data="$PWD/../shared/data"
if [ -d "$radar_data/dzt" ] && [ -d "$radar_data/dt1" ] && [ -d "$radar_data/rd3" ]; then
  cat >"$demo/radar.tfs" <<SCRIPT
click Utility.Option35
dialog "$radar_data/dzt/FILE____032.DZT"
click DZT.Command1
set DZT.Text2 "$PWD/$demo/gssi.su"
click DZT.Command3
click Utility.Option18
dialog "$radar_data/dt1/gprpy_ComOffs/XLINE00.DT1"
click DT1.Command1
set DT1.Text2 "$PWD/$demo/ekko.su"
click DT1.Command3
click Utility.Option12
dialog "$radar_data/rd3/ten_col.rd3"
click Radar_F.Command3
set Radar_F.Text5 "$PWD/$demo/ramac.su"
click Radar_F.Command1
SCRIPT
  build/tracefold-run "$demo/radar.tfs" >"$demo/radar.jsonl"
  echo "GSSI DZT, 520 scans of 512 samples: $demo/gssi.su"
  build/su-info "$demo/gssi.su"
  echo "EKKO DT1, 531 traces, time zero at point 3: $demo/ekko.su"
  build/su-info "$demo/ekko.su"
  echo "RAMAC, 10 traces of 512 samples: $demo/ramac.su"
  build/su-info "$demo/ramac.su"
else
  echo "Radar: no public samples in $radar_data, nothing converted"
fi
