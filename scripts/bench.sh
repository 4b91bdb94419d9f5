# shellcheck shell=bash
# ./dev bench [parts | programs]: measures the speed of the module's parts and of velmor-render as a whole, beside other
# ways of doing the same in the same run, and prints the ratios with what they are to be. Never a test: it fails for no
# number. Takes some minutes and 3 GB, which it gives back: in memory where there is as much, so that the disk, which
# writes when it likes, is not what is measured, else in build/speed.
bash scripts/setup.sh >&2
source scripts/common.sh

what=${1:-all}
case "$what" in all | parts | programs) ;; *) fail "usage: ./dev bench [parts | programs]" ;; esac

folder=$PWD/build/speed
rm -rf "$folder"
mkdir -p "$folder"

# megabytes_free FOLDER
megabytes_free() { df --output=avail -B1000000 "$1" 2>/dev/null | tail -n 1 | tr -d ' '; }

needed=4000
memory=$(($(sed -n 's/^MemAvailable: *\([0-9]*\) kB/\1/p' /proc/meminfo) / 1000))
place=$folder
if [ -w /dev/shm ] && [ "$(megabytes_free /dev/shm)" -gt $needed ] && [ "$memory" -gt $((2 * needed)) ]; then
  place=/dev/shm
elif [ "$(megabytes_free "$folder")" -lt $needed ]; then
  fail "the album and its copies need 4 GB: in /dev/shm, which has $(megabytes_free /dev/shm) MB, or in build/speed, which has $(megabytes_free "$folder") MB"
fi
data=$(mktemp -d "$place/velmor-bench.XXXXXX")
trap 'rm -rf "$data"' EXIT

measure_parts() {
  say "Building"
  configure_and_build release velmor-bench | tail -n 1
  say "The parts"
  TMPDIR=$data build/release/bench/velmor-bench --benchmark_repetitions=40 --benchmark_min_time=0.02 \
    --benchmark_enable_random_interleaving=true --benchmark_report_aggregates_only=false \
    --benchmark_out="$folder/parts.json" --benchmark_out_format=json >"$folder/parts.log" 2>&1 || {
    tail -n 20 "$folder/parts.log" >&2
    fail "the benchmarks do not run; the lines above say why"
  }
  echo "every repetition is in build/speed/parts.log"
}

# render_album SHEET: the album's image, which others are measured with.
render_album() {
  build/release/velmor-render --quiet --force --allow-overlong --no-dither "$data/album.wav" -o "$1" ||
    fail "the album cannot be rendered"
}

measure_programs() {
  say "Building"
  configure_and_build release velmor_cd velmor-render velmor-ddp velmor-cdcheck velmor-loudness-alone | tail -n 1
  say "Writing an album of 80 minutes, 24 bit"
  python3 scripts/bench_wav.py "$data/album.wav" 80
  # Its 80 minutes are one sector more than a disc of 80 minutes holds.
  local render="build/release/velmor-render --quiet --force --allow-overlong '$data/album.wav'"
  local ours="$render --no-dither -o '$data/album.cue'"
  local ours_dithered="$render -o '$data/album.cue'"
  local sox="sox -D '$data/album.wav' -t cdr '$data/album.cdr'"
  local sox_dithered="sox '$data/album.wav' -t cdr '$data/album.cdr'"
  local ffmpeg="ffmpeg -v error -y -i '$data/album.wav' -f s16le '$data/album.raw'"
  local cp="cp '$data/finished.bin' '$data/copy.bin'"
  render_album "$data/finished.cue"
  local made="'$data'/album.bin '$data'/album.cue '$data'/album.cdr '$data'/album.raw '$data'/copy.bin"
  # Each is run once before it is timed: memory that the machine has not touched lately costs whoever comes first. And
  # each makes its file anew: giving back an old one's memory is not to be measured.
  say "The programs, five rounds"
  local round
  for round in 1 2 3 4 5; do
    hyperfine --warmup 1 --runs 1 --style basic --export-json "$folder/programs-$round.json" \
      --prepare "rm -f $made" \
      -n velmor-render "$ours" -n cp "$cp" -n sox "$sox" -n ffmpeg "$ffmpeg" \
      -n velmor-render-dithered "$ours_dithered" -n sox-dithered "$sox_dithered" \
      >"$folder/programs-$round.log" 2>&1 || {
      cat "$folder/programs-$round.log" >&2
      fail "a program failed; the lines above say why"
    }
    sed -nE 's/^Benchmark [0-9]+: (.*)/\1/p; s/^ *Time .*: *([0-9.]+ [a-z]+).*(\[User.*\])/  \1 \2/p' \
      "$folder/programs-$round.log" | paste -d' ' - -
  done
  rm -f "$data"/album.{cdr,raw} "$data"/copy.bin
  measure_sets
  measure_checker
  measure_page
  rm -f "$data"/album.{bin,cue}
  hyperfine -N --warmup 5 --runs 100 --style basic --export-json "$folder/programs-start.json" \
    -n start-up "build/release/velmor-render --version" >"$folder/programs-start.log" 2>&1
  # A small program has to start it: the peak that the system notes counts what the parent took before.
  /usr/bin/time -f %M -o "$folder/memory" \
    build/release/velmor-render --quiet --force --allow-overlong "$data/album.wav" -o "$data/album.cue"
}

# The set of the album that the last round has left, beside a copy of its image and md5sum of the same.
measure_sets() {
  say "Sets for a plant, five rounds"
  render_album "$data/album.cue"
  local round
  for round in 1 2 3 4 5; do
    hyperfine --warmup 1 --runs 1 --style basic --export-json "$folder/programs-set-$round.json" \
      --prepare "rm -rf '$data/set' '$data/copy.bin'" -n set-write "build/release/velmor-ddp write '$data/album.cue' -o '$data/set'" \
      --prepare "rm -rf '$data/copy.bin'" -n copy-and-md5sum "cp '$data/album.bin' '$data/copy.bin' && md5sum '$data/copy.bin'" \
      --prepare "test -d '$data/set' || build/release/velmor-ddp write '$data/album.cue' -o '$data/set'" \
      -n set-check "build/release/velmor-ddp check '$data/set'" \
      --prepare true -n md5sum "md5sum '$data/set/IMAGE.DAT'" >"$folder/programs-set-$round.log" 2>&1 || {
      cat "$folder/programs-set-$round.log" >&2
      fail "a program failed; the lines above say why"
    }
  done
  rm -rf "$data/set" "$data/copy.bin"
}

# The checker on the album that is there and on one that is too loud, beside cat of their images, and on a file of 16 MiB
# that is all TRACK lines.
measure_checker() {
  say "The checker, ten rounds"
  local raw=(-t raw -r 44100 -c 2 -e signed -b 16)
  # Every sector has two samples at full scale then, as in a loud master: the clipping of which sox warns is meant.
  sox -V1 -D "${raw[@]}" "$data/album.bin" "${raw[@]}" "$data/loud.bin" vol 1.002
  sed 's/album\.bin/loud.bin/' "$data/album.cue" >"$data/loud.cue"
  {
    echo 'FILE "album.bin" BINARY'
    head -c 16777000 < <(yes '  TRACK 01 AUDIO')
  } >"$data/tracks.cue"
  local round
  for round in 1 2 3 4 5 6 7 8 9 10; do
    # Of a sheet with errors the checker says so by its exit status.
    hyperfine -N --ignore-failure --warmup 1 --runs 1 --style basic --export-json "$folder/programs-check-$round.json" \
      -n check "build/release/velmor-cdcheck '$data/album.cue'" -n cat "cat '$data/album.bin'" \
      -n check-loud "build/release/velmor-cdcheck '$data/loud.cue'" -n cat-loud "cat '$data/loud.bin'" \
      -n check-tracks "build/release/velmor-cdcheck '$data/tracks.cue'" >"$folder/programs-check-$round.log" 2>&1 || {
      cat "$folder/programs-check-$round.log" >&2
      fail "a program failed; the lines above say why"
    }
  done
  rm -f "$data/tracks.cue" "$data"/loud.{cue,bin}
}

# The page of the same album, beside the checker without it and the loudness library by itself.
measure_page() {
  say "A page, two rounds"
  local round
  for round in 1 2; do
    hyperfine --runs 1 --style basic --ignore-failure --export-json "$folder/programs-page-$round.json" \
      -n scan "build/release/velmor-cdcheck '$data/album.cue'" \
      -n loudness-alone "build/release/bench/velmor-loudness-alone '$data/album.bin'" \
      -n page "build/release/velmor-cdcheck '$data/album.cue' --html '$data/page.html' --force" \
      >"$folder/programs-page-$round.log" 2>&1 || {
      cat "$folder/programs-page-$round.log" >&2
      fail "a program failed; the lines above say why"
    }
  done
  rm -f "$data/page.html"
}

[ "$what" = programs ] || measure_parts
[ "$what" = parts ] || measure_programs

say "In one run on $(sed -n 's/^model name[^:]*: //p' /proc/cpuinfo | head -n 1), $(nproc) cores, files in $place"
[ -f "$folder/parts.json" ] || echo '{"benchmarks": []}' >"$folder/parts.json"
python3 scripts/bench_table.py "$folder"
