# shellcheck shell=bash
# demo_album.sh FOLDER: writes the demo's five sources, of different formats, rates and channel counts.
source scripts/common.sh
folder=$1

# song FILE SECONDS RATE CHANNELS FREQUENCY TITLE ARTIST [SOX FORMAT OPTION...]
song() {
  local file=$1 seconds=$2 rate=$3 channels=$4 frequency=$5 title=$6 artist=$7
  shift 7
  sox -R -n -r "$rate" -c "$channels" "$@" --comment "Title=$title" --add-comment "Artist=$artist" \
    --add-comment "Album=Night Drive" "$folder/$file" \
    synth "$seconds" pluck "$frequency" synth sine mix "$((frequency * 3 / 2))" tremolo 5 40 fade t 0.05 "$seconds" 1.5 \
    gain -n -3 2>/dev/null
}

say "Making five sources"
song "Headlights.wav" 14 44100 2 220 "Headlights" "The Lanterns" -b 16
song "Toll Road.flac" 12.5 96000 2 165 "Toll Road" "The Lanterns" -b 24
song "Say Go.aiff" 9 48000 1 262 "Say Go" "The Lanterns" -b 24
song "Rain.ogg" 11.25 44100 2 196 "Rain" "The Lanterns & Ana"
song "Arrival.w64" 16 44100 6 247 "Arrival" "The Lanterns" -b 16
du -ah --apparent-size "$folder"/*.*
