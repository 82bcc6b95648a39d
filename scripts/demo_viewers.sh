# Viewers: the seismic file explorer on the demo SU file. The list mode
# shows ns of the first trace; the "Other" mode reads words of a chosen
# trace at their byte positions, without reading the traces before it.
su_file="$PWD/$demo/es1225.su"
trace=5
ns=$(od -An -t d2 -j 114 -N 2 "$su_file" | tr -d ' ')
record=$((240 + 4 * ns))
word_position() { echo $(( (trace - 1) * record + $1 + 1 )); }
cat >"$demo/viewers.tfs" <<SCRIPT
session current_file "$su_file"
click Utility.Command4
click pick.Command2
dump pick
click pick.Option3
set pick.Text2 $(word_position 12)
click pick.Option5
click pick.Command2
dump pick
set pick.Text2 $(word_position 114)
click pick.Option4
click pick.Command2
dump pick
set pick.Text2 $(word_position 116)
click pick.Command2
dump pick
SCRIPT
build/tracefold-run "$demo/viewers.tfs" >"$demo/viewers.jsonl"
read -r -a shown <<<"$(grep '"event":"dump"' "$demo/viewers.jsonl" | grep -o '"Text3":{[^}]*' | sed 's/.*"text":"\([^"]*\)".*/\1/' | tr '\n' ' ')"
echo "Seismic file explorer on $demo/es1225.su ($(grep -o '"Text4":{[^}]*' "$demo/viewers.jsonl" | head -1 | sed 's/.*"text":"\([^"]*\)".*/\1/') bytes):"
echo "  first trace ns = ${shown[0]}; trace $trace: tracf = ${shown[1]}, ns = ${shown[2]}, dt = ${shown[3]}"
