# shellcheck shell=bash
# ./dev demo: makes an album of several kinds of files, renders it to a CD image, shows it, has programs of other
# makers confirm it, and burns it to a recorder that has no hardware.
bash scripts/setup.sh >&2
source scripts/common.sh
say "Building"
configure_and_build release velmor_cd velmor-render velmor-ddp velmor-emulated-drive | tail -n 1

folder=$PWD/build/demo
rm -rf "$folder"
mkdir -p "$folder/sources"
bash scripts/demo_album.sh "$folder/sources"

album=("$folder/sources/Headlights.wav" "$folder/sources/Toll Road.flac" "$folder/sources/Say Go.aiff"
  "$folder/sources/Rain.ogg" "$folder/sources/Arrival.w64"
  --catalog 0731452345622 --title "Night Drive" --performer "The Lanterns"
  --isrc "1=USABC2600001" --isrc "2=USABC2600002" --isrc "3=USABC2600003" --isrc "4=USABC2600004" --isrc "5=USABC2600005"
  --disc-leadin 2000 --track-leadin 2000)

say "Rendering five files to a disc image"
build/release/velmor-render "${album[@]}" -o "$folder/album.cue" --ddp "$folder/master"

say "The sheet"
tr -d '\r' <"$folder/album.cue"

say "What other programs make of it"
bash scripts/demo_readers.sh "$folder"

say "The set that a pressing plant takes"
build/release/velmor-ddp check "$folder/master"

say "Burning it, to a recorder without hardware"
bash scripts/demo_burn.sh "$folder" "${album[@]}"

say "The disc is in build/demo: album.cue and album.bin, for a plant in master, and as a drive has it in drives/drive01"
