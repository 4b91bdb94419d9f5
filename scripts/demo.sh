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

source scripts/demo_options.sh
mapfile -t album < <(album_options "$folder/sources")

say "Rendering five files to a disc image"
build/release/velmor-render "${album[@]}" -o "$folder/album.cue" --ddp "$folder/master" --html "$folder/master.html"

say "The sheet"
tr -d '\r' <"$folder/album.cue"

say "What other programs make of it"
bash scripts/demo_readers.sh "$folder"

say "The set that a pressing plant takes"
build/release/velmor-ddp check "$folder/master"

say "Burning it, to a recorder without hardware"
bash scripts/demo_burn.sh "$folder" "${album[@]}"

say "The disc is in build/demo: album.cue and album.bin, for a plant in master, and as a drive has it in drives/drive01"
say "A page of it to look at: file://$folder/master.html"
