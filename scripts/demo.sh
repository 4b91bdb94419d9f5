# shellcheck shell=bash
# ./dev demo: makes an album of several kinds of files, renders it to a CD image, shows it, and has programs of other
# makers confirm it.
bash scripts/setup.sh >&2
source scripts/common.sh
say "Building"
configure_and_build release velmor_cd velmor-render | tail -n 1

folder=$PWD/build/demo
rm -rf "$folder"
mkdir -p "$folder/sources"
bash scripts/demo_album.sh "$folder/sources"

say "Rendering five files to a disc image"
render=$PWD/build/release/velmor-render
cd "$folder/sources" || fail "the demo's folder is gone"
"$render" Headlights.wav "Toll Road.flac" "Say Go.aiff" Rain.ogg Arrival.w64 --catalog 0731452345622 --title "Night Drive" --performer "The Lanterns" \
  --isrc 1=USABC2600001 --isrc 2=USABC2600002 --isrc 3=USABC2600003 --isrc 4=USABC2600004 --isrc 5=USABC2600005 \
  --disc-leadin 2000 --track-leadin 2000 --dither tpdf -o ../album.cue
cd - >/dev/null || fail "the checkout is gone"

say "The sheet"
tr -d '\r' <"$folder/album.cue"

say "What other programs make of it"
bash scripts/demo_readers.sh "$folder"

say "The disc is in build/demo: album.cue and album.bin"
