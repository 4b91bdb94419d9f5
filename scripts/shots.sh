# shellcheck shell=bash
# ./dev shots: makes the pictures in docs/images/ anew, of the page of the demo's album. Look at them before a commit.
bash scripts/setup.sh >&2
source scripts/common.sh
source scripts/demo_options.sh
say "Building"
configure_and_build release velmor_cd velmor-render | tail -n 1

folder=$PWD/build/shots
rm -rf "$folder"
mkdir -p "$folder/sources" docs/images
bash scripts/demo_album.sh "$folder/sources"
mapfile -t album < <(album_options "$folder/sources")
build/release/velmor-render --quiet "${album[@]}" -o "$folder/album.cue" --html "$folder/album.html"

say "Pictures"
python3 tools/browser/shots.py "$folder/album.html" "$folder"
# A few colours are enough for a page, and take a third of the room.
for picture in page page-narrow page-printed; do
  ffmpeg -v error -y -i "$folder/$picture.png" \
    -vf 'split[a][b];[a]palettegen=max_colors=64[p];[b][p]paletteuse=dither=none' "docs/images/$picture.png"
done
du -h --apparent-size docs/images/*.png
