# shellcheck shell=bash
# demo_burn.sh FOLDER RENDER-ARGUMENT...: renders the demo's album once more and burns it, to the second of two emulated
# recorders, with texts and eject; shows the disc and checks that it is the image. FOLDER holds album.bin already.
source scripts/common.sh
folder=$1
shift
programs=$PWD/build/release
export XDG_CONFIG_HOME=$folder/config

rm -rf "$folder/drives"
"$programs/velmor-emulated-drive" create "$folder/drives" >/dev/null

# The preloaded library gives the program two recorders without hardware; everything else is as with real ones.
on_emulated_drives() { "$programs/velmor-emulated-drive" run "$folder/drives" -- "$programs/velmor-render" "$@"; }

echo "The recorders:"
on_emulated_drives --list-drives
echo
on_emulated_drives "$@" -o "$folder/album.cue" --force --burn --drive 1 --eject --cd-text --verify | tail -n 1

echo
echo "The disc:"
"$programs/velmor-emulated-drive" show "$folder/drives" 1
"$programs/velmor-emulated-drive" extract "$folder/drives" 1 "$folder/disc.raw" >/dev/null
cmp "$folder/disc.raw" "$folder/album.bin" || fail "the disc is not the image"
rm -f "$folder/disc.raw"
echo "its audio is album.bin, identical to the byte"
