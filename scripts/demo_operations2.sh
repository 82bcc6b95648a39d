# SU file operations II: size calculator, splitter (an SU name loses its last
# 4 characters in the part names: line.su gives lin_01_su.spt), compression,
# subtraction and the batch line of the record resizing, on the ABEM line.
ops2="$demo/operations2"
mkdir -p "$ops2/app"
if [ ! -e "$demo/abem.su" ]; then
  build/make-records abem "$ops2/abem" 2 >/dev/null
  cat >"$ops2/abem.tfs" <<SCRIPT
click Utility.Option5
dialog "$PWD/$ops2/abem/ rec001.abm rec002.abm"
click abem.Command4
set abem.Text2 "$PWD/$demo/abem.su"
click abem.Command1
SCRIPT
  build/tracefold-run "$ops2/abem.tfs" >/dev/null
fi
cp "$demo/abem.su" "$ops2/line.su"
line="$PWD/$ops2/line.su"

cat >"$ops2/operations2.tfs" <<SCRIPT
session current_file "$line"
session nb_channels "24"
click Utility.Commandp7
check FileSize.Option2 on
dump FileSize
close FileSize
click Utility.Commandp5
dialog "$line"
click spliter.Command1
set spliter.Combo1 "100000"
reply yes
click spliter.Command5
dialog "$PWD/$ops2/ lin_01_su.spt lin_02_su.spt lin_03_su.spt"
click spliter.Command2
set spliter.Text3 "$PWD/$ops2/rebuilt.su"
click spliter.Command4
close spliter
dialog "$line"
click Utility.Command19
dialog "$PWD/$ops2/line.SU2"
click Utility.Command21
click Utility.Commandp8
set substract.Text2 "$line"
click substract.Command5
close substract
click Utility.Command9
tab rezize.SSTab1 1
click rezize.Command3
SCRIPT
build/tracefold-run --app-dir "$PWD/$ops2/app" "$ops2/operations2.tfs" >"$demo/operations2.jsonl"
grep -o '"Text5":{[^}]*"text":"[0-9]*"' "$demo/operations2.jsonl" | sed 's/.*"text":"/SEG-Y size of 12 shots of 24 traces: /;s/"$/ bytes/' || true
cmp -s "$ops2/line.su" "$ops2/rebuilt.su" && echo "Split into 3 parts and joined again: $ops2/rebuilt.su is the original byte for byte"
echo "Compressed to 16-bit samples and expanded: $(stat -c %s "$ops2/line.SU2") bytes, then $ops2/line.SU"
build/su-info "$ops2/line.SU" | head -n 3
echo "Line minus itself: $ops2/line_sub.su"
build/su-info "$ops2/line_sub.su" | head -n 3
echo "Resizing batch line: $(tr -d '\r' <"$ops2/app/batch.bat")"
