# shellcheck shell=bash
# ./dev fuzz [MINUTES | --seconds SECONDS | --keep] [TARGET...]: fuzzes for that long in all (default 5 minutes), shared
# out among the targets, as many at once as there are processors. What is found stays in build/fuzz/findings, what is
# learnt for the next run in build/fuzz/corpus. --keep does not fuzz: it adds to fuzz/seeds, which every test run runs,
# what of that corpus gets anywhere where no seed has been.
bash scripts/setup.sh >&2
source scripts/common.sh

usage() { fail "usage: ./dev fuzz [MINUTES | --seconds SECONDS | --keep] [TARGET...]"; }

seconds=300
keep=false
if [ "${1:-}" = --keep ]; then
  keep=true
  shift
elif [ "${1:-}" = --seconds ]; then
  [[ ${2:-} =~ ^[0-9]+$ ]] || usage
  seconds=$2
  shift 2
elif [[ ${1:-} =~ ^[0-9]+$ ]]; then
  seconds=$(($1 * 60))
  shift
fi

mkdir -p build/fuzz
say "Building the fuzz targets"
configure_and_build sanitize fuzz_targets | tail -n 1
programs=build/sanitize/fuzz
mapfile -t known <"$programs/targets.txt"
targets=("$@")
[ $# -gt 0 ] || targets=("${known[@]}")
for target in "${targets[@]}"; do
  printf '%s\n' "${known[@]}" | grep -qxF -- "$target" || fail "there is no fuzz target '$target'; there are: ${known[*]}"
done

# An allocation notes no callers, its memory is used again soon and is not given back: each is a fifth of the time. Who
# runs a finding again sees the callers.
export ASAN_OPTIONS=malloc_context_size=0:quarantine_size_mb=8:allocator_release_to_os_interval_ms=-1

# Together the seeds stay well below two megabytes: an input as long as this is no seed.
longest_seed=4096
if $keep; then
  for target in "${targets[@]}"; do
    corpus=build/fuzz/corpus/$target
    [ -d "$corpus" ] || fail "there is nothing to keep for '$target' before it was fuzzed: ./dev fuzz 5 $target"
    "$programs/fuzz_$target" -merge=1 -use_counters=0 -max_len=$longest_seed "fuzz/seeds/$target" "$corpus" \
      >"build/fuzz/$target.keep.log" 2>&1 || fail "keeping failed; the whole report is build/fuzz/$target.keep.log"
    printf '%-16s %4s seeds\n' "$target" "$(find "fuzz/seeds/$target" -type f | wc -l)"
  done
  say "$(du -sb fuzz/seeds | cut -f1) bytes of seeds in all"
  exit
fi

findings=$PWD/build/fuzz/findings
mkdir -p "$findings"
share=$((seconds / ${#targets[@]}))
[ "$share" -gt 0 ] || share=1

# fuzz_one TARGET: false when it found something.
fuzz_one() {
  local target=$1
  local corpus=$PWD/build/fuzz/corpus/$target
  local log=$PWD/build/fuzz/$target.log
  local words=fuzz/dictionaries/$target.dict
  mkdir -p "$corpus"
  local options=(-max_total_time="$share" -timeout=20 -rss_limit_mb=2048 -max_len=8192 -print_final_stats=1
    -entropic_scale_per_exec_time=1
    -artifact_prefix="$findings/$target-")
  [ ! -f "$words" ] || options+=(-dict="$words")
  # A run that is stopped leaves its scratch folder to this one's end.
  local scratch
  scratch=$(mktemp -d "${TMPDIR:-/tmp}/velmor-fuzz.XXXXXX")
  local result=0
  TMPDIR=$scratch UBSAN_OPTIONS=print_stacktrace=1 \
    "$programs/fuzz_$target" "${options[@]}" "$corpus" "fuzz/seeds/$target" >"$log" 2>&1 || result=$?
  rm -rf "$scratch"
  if [ "$result" = 0 ]; then
    # Edges between pieces of the project's own code: those passed, and all that the program has.
    printf '%-16s %9s inputs %6s a second, %5s of %5s edges\n' "$target" \
      "$(sed -n 's/^stat::number_of_executed_units: *//p' "$log")" \
      "$(sed -n 's/^stat::average_exec_per_sec: *//p' "$log")" \
      "$(grep -oE 'cov: [0-9]+' "$log" | tail -n 1 | cut -d' ' -f2)" \
      "$(sed -n 's/.*(\([0-9]*\) inline 8-bit counters).*/\1/p' "$log" | head -n 1)"
    return 0
  fi
  printf '\n%s: a finding\n' "$target"
  grep -nE 'ERROR:|runtime error:|does not hold|^ +#[0-9]+ .* in .*\.(cpp|h):' "$log" | head -n 20
  local input
  input=$(sed -n 's/.*Test unit written to \(.*\)$/\1/p' "$log" | tail -n 1)
  echo "  input:    ${input:-none was written; the log says more}"
  echo "  again:    $programs/fuzz_$target ${input:-}"
  echo "  the log:  $log"
  return 1
}

# Jobs in the background do not hear Ctrl-C: all of them are told.
trap 'trap - TERM; kill 0' INT TERM
lanes=$(nproc)
found=0
running=0
await_one() {
  wait -n || found=$((found + 1))
  running=$((running - 1))
}
say "Fuzzing ${#targets[@]} targets, $share s each, $lanes at once"
for target in "${targets[@]}"; do
  [ "$running" -lt "$lanes" ] || await_one
  {
    result=0
    report=$(fuzz_one "$target") || result=1
    printf '%s\n' "$report"
    exit $result
  } &
  running=$((running + 1))
done
while [ "$running" -gt 0 ]; do await_one; done
logs=("${targets[@]/#/build/fuzz/}")
say "$(awk '/^stat::number_of_executed_units/ { inputs += $2 } END { print inputs }' "${logs[@]/%/.log}") inputs in all"
[ "$found" = 0 ] || fail "$found of ${#targets[@]} targets found something; the inputs are in build/fuzz/findings"
say "Nothing found"
