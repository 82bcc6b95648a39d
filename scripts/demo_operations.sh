# SU file operations: the two demo SU files merged into one line, then a
# range of traces copied out of the merged file.
ops="$demo/operations"
mkdir -p "$ops"
# The demo's SU files, made here when this fragment runs alone.
if [ ! -s "$demo/es1225.su" ] || [ ! -s "$demo/abem.su" ]; then
  build/make-records es1225 "$ops/es1225" 2 >/dev/null
  build/make-records abem "$ops/abem" 2 >/dev/null
  build/tracefold-run - >/dev/null <<SCRIPT
click Utility.Option4
dialog "$PWD/$ops/es1225/ rec001.dat rec002.dat"
click es1225.Command3
set es1225.Text2 "$PWD/$demo/es1225.su"
click es1225.Command1
click Utility.Option5
dialog "$PWD/$ops/abem/ $(cd "$ops/abem" && echo *)"
click abem.Command4
set abem.Text2 "$PWD/$demo/abem.su"
click abem.Command1
SCRIPT
fi
cp "$demo/es1225.su" "$demo/abem.su" "$ops/"
rm -f "$ops/line.su" "$ops/lineX.SU"
cat >"$ops/operations.tfs" <<SCRIPT
# Merge SU files, through the main panel's button
click Utility.Commandp4
dialog "$PWD/$ops/ es1225.su abem.su"
click Add_SU_files.Command1
set Add_SU_files.Text2 "$PWD/$ops/line.su"
click Add_SU_files.Command2
close Add_SU_files
# Traces 7 to 18 (the middle of the first record and the start of the second) of the merged line into a new file
session current_file "$PWD/$ops/line.su"
click Utility.Command12
click Add_file.Option2
set Add_file.Text2 "$PWD/$ops/lineX.SU"
set Add_file.Text3 "7"
set Add_file.Text4 "18"
click Add_file.Command2
SCRIPT
build/tracefold-run "$ops/operations.tfs" >"$demo/operations.jsonl"
echo "Merged es1225.su and abem.su into $ops/line.su; traces 7 to 18 copied to $ops/lineX.SU"
build/su-info "$ops/line.su"
build/su-info "$ops/lineX.SU"
