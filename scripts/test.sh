# shellcheck shell=bash
# ./dev test [--all] [NAME]: sets up; builds for macOS, with g++ (release), with clang (AddressSanitizer,
# UndefinedBehaviorSanitizer) and for 64-bit ARM; checks formatting and lint; runs the tests of the latter three, which
# inspect and drive what was built for macOS and run each benchmark for a moment; fuzzes for a minute. NAME limits the run
# to the tests whose name it matches. Of the tests for ARM, which an emulator runs, only the quick ones unless --all is given.
bash scripts/setup.sh >&2
bash scripts/setup_mac.sh >&2
source scripts/common.sh

arm64_targets=(quick_tests)
arm64_label=quick
if [ "${1:-}" = --all ]; then
  arm64_targets=()
  arm64_label=long
  shift
fi

# step WORDS: names what comes, and when.
step() {
  say "$*, after $(((SECONDS - started) / 60)) min $(((SECONDS - started) % 60)) s"
}

build() {
  step "Build: $1"
  quiet_build "$@"
}

started=$SECONDS
build mac bash scripts/mac.sh
for preset in release sanitize; do
  build "$preset" configure_and_build "$preset"
done
build arm64 configure_and_build arm64 ${arm64_targets[@]+"${arm64_targets[@]}"}

step Lint
bash scripts/lint.sh >build/lint.log 2>&1 || {
  grep -vE '^[0-9]+ warnings? generated' build/lint.log | head -n 100 >&2
  fail "lint found the above; the whole report is build/lint.log"
}
echo "clean"

# run_tests PRESET [OPTION...]: with the tests whose name was given. Some wait for other programs: one more at a time than
# there are processors.
run_tests() {
  step "Tests: $1"
  ctest --preset "$1" -j "$(($(nproc) + 1))" ${name:+-R "$name"} --output-on-failure "${@:2}"
}
name=${1:-}
run_tests release
run_tests sanitize
run_tests arm64 -L "$arm64_label"
if [ $# -eq 0 ]; then
  step "Fuzzing for a minute"
  bash scripts/fuzz.sh --seconds 60 >build/fuzz.log 2>&1 || {
    tail -n 60 build/fuzz.log >&2
    fail "fuzzing found the above; the whole report is build/fuzz.log"
  }
  tail -n 1 build/fuzz.log
fi

say "All of it took $(((SECONDS - started) / 60)) min $(((SECONDS - started) % 60)) s after setup"
