# shellcheck shell=bash
# ./dev coverage: builds the module so that clang counts which way every condition of its sources goes, runs the tests of
# the module, and prints a table of its files. Fails when a condition never went one way and
# scripts/coverage_reasons.txt does not say why, and when a reason stands there for one that does go both ways. The
# conditions are those that are written in the sources, as they ship (without assertions): what a compiler adds, for
# exceptions above all, is none of them.
bash scripts/setup.sh >&2
source scripts/common.sh

tests=(burn_class_test burn_test conversion_test mac_burn_on_doubles_test mac_hosted_burn_test mac_import_on_doubles_test
  plugin_class_test plugin_test sink_class_test sink_test support_test)
folder=$PWD/build/coverage
profiles=$folder/profiles

say "Build: coverage"
quiet_build coverage configure_and_build coverage "${tests[@]}"

say "Tests of the module"
rm -rf "$profiles"
mkdir -p "$profiles"
# Counters in the file itself (%c), one for each process and each of its libraries.
LLVM_PROFILE_FILE="$profiles/%c%p-%m.profraw" ctest --test-dir "$folder" -j "$(nproc)" \
  -R "^($(IFS='|' && echo "${tests[*]}"))\$" --output-on-failure >build/coverage.tests.log || {
  tail -n 60 build/coverage.tests.log >&2
  fail "a test failed; the whole report is build/coverage.tests.log"
}
grep -E '% tests passed' build/coverage.tests.log

find "$profiles" -name '*.profraw' >"$folder/profiles.txt"
llvm-profdata-14 merge -sparse -f "$folder/profiles.txt" -o "$folder/merged.profdata"
objects=()
for object in "$folder/velmor_cd.so" "$folder/velmor_cd_gnustep.so" "${tests[@]/#/$folder/tests/}"; do
  objects+=(-object "$object")
done
llvm-cov-14 export -instr-profile "$folder/merged.profdata" "${objects[@]}" >"$folder/coverage.json" 2>"$folder/export.log"

say "Conditions of the module that went both ways"
python3 scripts/coverage.py "$folder/coverage.json"
