# shellcheck shell=bash
# ./dev threads: runs the tests that have threads under ThreadSanitizer: reading ahead of a render, Ctrl-C, burns on the
# emulated drive, measuring for a page. Fails when a test does, and when ThreadSanitizer reports anything that
# scripts/thread_suppressions.txt does not name with its reason.
bash scripts/setup.sh >&2
source scripts/common.sh

tests=(burn_program_test emulated_drive_linked_libburn_test page_test recording_emulated_tests recording_library_tests
  render_process_test render_unit_test)
# A stack as large as all addresses leaves ThreadSanitizer no place for its own tables.
without=PageProgram.SaysThatTheSystemGivesItNoThread
reports=$PWD/build/thread/reports

say "Build: thread"
quiet_build thread configure_and_build thread "${tests[@]}"

say "Tests: thread"
rm -rf "$reports"
mkdir -p "$reports"
result=0
# The programs that the tests start report into files of their own as well. At its start ThreadSanitizer writes a file
# to the scratch folder, or does without where there is none: a limit on the size of files is then the program's alone.
TEST_TMPDIR=/dev/null GTEST_FILTER=-$without \
  TSAN_OPTIONS="suppressions=$PWD/scripts/thread_suppressions.txt log_path=$reports/report" \
  ctest --test-dir build/thread -j "$(nproc)" -R "^($(IFS='|' && echo "${tests[*]}"))\$" \
  --output-on-failure >build/thread.tests.log || result=1
grep -E '% tests passed' build/thread.tests.log
found=$(find "$reports" -type f -exec cat {} + | grep -c '^WARNING: ThreadSanitizer' || true)
if [ "$found" != 0 ]; then
  find "$reports" -type f -exec cat {} + | grep '^SUMMARY' | sort | uniq -c | sort -rn | head -n 20 >&2
  fail "ThreadSanitizer reported $found times; its reports are in build/thread/reports"
fi
[ "$result" = 0 ] || {
  grep -E '^\[  FAILED|Failure$' build/thread.tests.log | head -n 40 >&2
  fail "a test failed; the whole report is build/thread.tests.log"
}
say "Nothing reported"
