# shellcheck shell=bash
# ./dev bench [parts | programs]: measures the speed of the module's parts and of velmor-render as a whole, beside other
# ways of doing the same in the same run, and prints the ratios with what they are to be. Never a test: it fails for no
# number. Takes some minutes and 3 GB in build/bench, which it gives back.
bash scripts/setup.sh >&2
source scripts/common.sh

what=${1:-all}
case "$what" in all | parts | programs) ;; *) fail "usage: ./dev bench [parts | programs]" ;; esac

folder=$PWD/build/bench
rm -rf "$folder"
mkdir -p "$folder"
trap 'rm -f "$folder"/album.*' EXIT

measure_parts() {
  say "Building"
  configure_and_build release velmor-bench | tail -n 1
  say "The parts"
  TMPDIR=$folder build/release/bench/velmor-bench --benchmark_repetitions=15 --benchmark_min_time=0.05 \
    --benchmark_enable_random_interleaving=true --benchmark_report_aggregates_only=false \
    --benchmark_out="$folder/parts.json" --benchmark_out_format=json >"$folder/parts.log" 2>&1 || {
    tail -n 20 "$folder/parts.log" >&2
    fail "the benchmarks do not run; the lines above say why"
  }
  echo "every repetition is in build/bench/parts.log"
}

measure_programs() {
  say "Building"
  configure_and_build release velmor_cd velmor-render | tail -n 1
  local space
  space=$(df --output=avail -B1000000 "$folder" | tail -n 1)
  [ "$space" -gt 4000 ] || fail "the album and its copies need 4 GB in build/bench; $((space)) MB are free"
  say "Writing an album of 80 minutes, 24 bit"
  python3 scripts/bench_wav.py "$folder/album.wav" 80
  local ours="build/release/velmor-render --quiet --force '$folder/album.wav' -o '$folder/album.cue'"
  local sox="sox -D '$folder/album.wav' -t cdr '$folder/album.cdr'"
  local ffmpeg="ffmpeg -v error -y -i '$folder/album.wav' -f s16le '$folder/album.raw'"
  say "The programs, five rounds"
  local round
  for round in 1 2 3 4 5; do
    hyperfine --runs 1 --style basic --export-json "$folder/programs-$round.json" \
      --prepare "rm -f '$folder'/album.{bin,cue,cdr,raw}" \
      -n velmor-render "$ours" -n sox "$sox" -n ffmpeg "$ffmpeg" >"$folder/programs-$round.log" 2>&1 || {
      cat "$folder/programs-$round.log" >&2
      fail "a program failed; the lines above say why"
    }
    sed -nE 's/^Benchmark [0-9]+: (.*)/\1/p; s/^ *Time .*: *([0-9.]+ [a-z]+).*(\[User.*\])/  \1 \2/p' \
      "$folder/programs-$round.log" | paste -d' ' - -
  done
  rm -f "$folder"/album.{bin,cue,cdr,raw}
  python3 scripts/bench_memory.py build/release/velmor-render --quiet --force "$folder/album.wav" -o "$folder/album.cue" \
    >"$folder/memory"
}

[ "$what" = programs ] || measure_parts
[ "$what" = parts ] || measure_programs

say "In one run on $(sed -n 's/^model name[^:]*: //p' /proc/cpuinfo | head -n 1), $(nproc) cores"
[ -f "$folder/parts.json" ] || echo '{"benchmarks": []}' >"$folder/parts.json"
python3 scripts/bench_table.py "$folder"
