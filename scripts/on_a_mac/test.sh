# shellcheck shell=bash
# ./dev test on a Mac: builds the module for both processors, looks at the file with the system's tools, and runs the tests
# that need nothing of Linux on it, loaded by the system's own loader. For the bash 3.2 that comes with the system. Has not
# been run yet.
bash scripts/on_a_mac/build.sh
source scripts/common.sh

dylib=$PWD/build/mac/velmor_cd.dylib
say "The file"
[ "$(lipo -archs "$dylib")" = "x86_64 arm64" ] || fail "$dylib is not for both processors"
codesign --verify --strict --all-architectures --verbose "$dylib"

processor=$(uname -m)
say "Tests: $processor"
cmake --preset "mac-native-$processor" -DBUILD_TESTING=ON ||
  fail "configuring the tests failed; they need GoogleTest (brew install googletest)"
cmake --build --preset "mac-native-$processor"
VELMOR_TEST_MODULE=$dylib ctest --test-dir "build/mac-native-$processor" --output-on-failure
