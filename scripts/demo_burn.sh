# shellcheck shell=bash
# demo_burn.sh FOLDER RENDER-ARGUMENT...: renders the demo's album once more and burns it, to the second of two emulated
# recorders, with texts and eject; shows the disc and checks that it is the image. FOLDER holds album.bin already.
source scripts/common.sh
folder=$1
shift
programs=$PWD/build/release
export XDG_CONFIG_HOME=$folder/config

rm -rf "$folder/drives"
"$programs/velmor-recorder" create "$folder/drives" >/dev/null

# The preloaded library gives the program two recorders without hardware; everything else is as with real ones.
on_emulated_recorders() { "$programs/velmor-recorder" run "$folder/drives" -- "$programs/velmor-render" "$@"; }

echo "The recorders:"
on_emulated_recorders --list-drives
echo
on_emulated_recorders "$@" -o "$folder/album.cue" --force --burn --drive 1 --eject --cd-text --verify | tail -n 1

echo
echo "The disc:"
"$programs/velmor-recorder" show "$folder/drives" 1
"$programs/velmor-recorder" extract "$folder/drives" 1 "$folder/disc.raw" >/dev/null
cmp "$folder/disc.raw" "$folder/album.bin" || fail "the disc is not the image"
rm -f "$folder/disc.raw"
echo "its audio is album.bin, identical to the byte"
