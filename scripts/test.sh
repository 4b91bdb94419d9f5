# shellcheck shell=bash
# ./dev test [NAME]: sets up; builds for macOS, with g++ (release) and with clang (AddressSanitizer,
# UndefinedBehaviorSanitizer); checks formatting and lint; runs all tests in the latter two, which inspect and drive what
# was built for macOS and run each benchmark for a moment; fuzzes for a minute. NAME limits the run to the tests whose name it matches.
bash scripts/setup.sh >&2
bash scripts/setup_mac.sh >&2
source scripts/common.sh

started=$SECONDS
for preset in mac release sanitize; do
  say "Build: $preset"
  configure_and_build "$preset" >"build/$preset.build.log" 2>&1 || {
    grep -E 'error|FAILED' "build/$preset.build.log" | head -n 40 >&2
    fail "building '$preset' failed; the whole report is build/$preset.build.log"
  }
  tail -n 1 "build/$preset.build.log"
done

say "Lint"
bash scripts/lint.sh >build/lint.log 2>&1 || {
  grep -vE '^[0-9]+ warnings? generated' build/lint.log | head -n 100 >&2
  fail "lint found the above; the whole report is build/lint.log"
}
echo "clean"

for preset in release sanitize; do
  say "Tests: $preset"
  # Some wait for other programs: one more than there are processors.
  ctest --preset "$preset" -j "$(($(nproc) + 1))" ${1:+-R "$1"} --output-on-failure
done
if [ $# -eq 0 ]; then
  say "Fuzzing for a minute"
  bash scripts/fuzz.sh --seconds 60 >build/fuzz.log 2>&1 || {
    tail -n 60 build/fuzz.log >&2
    fail "fuzzing found the above; the whole report is build/fuzz.log"
  }
  tail -n 1 build/fuzz.log
fi

say "All of it took $(((SECONDS - started) / 60)) min $(((SECONDS - started) % 60)) s after setup"
