# shellcheck shell=bash
# Sourced: what the demo's album is rendered with.

# album_options FOLDER: prints, one a line, the inputs that demo_album.sh has made in FOLDER and the options.
album_options() {
  printf '%s\n' "$1/Headlights.wav" "$1/Toll Road.flac" "$1/Say Go.aiff" "$1/Rain.ogg" "$1/Arrival.w64" \
    --catalog 0731452345622 --title "Night Drive" --performer "The Lanterns"
  local track
  for track in 1 2 3 4 5; do printf -- '--isrc\n%s\n' "$track=USABC260000$track"; done
  printf '%s\n' --disc-leadin 2000 --track-leadin 2000
}
