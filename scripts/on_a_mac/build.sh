# shellcheck shell=bash
# ./dev build on a Mac: build/mac/velmor_cd.dylib for both processors, by the system's own compiler and SDK. For the bash
# 3.2 that comes with the system. Has not been run yet.
source scripts/common.sh

for tool in cmake clang lipo codesign; do
  command -v "$tool" >/dev/null ||
    fail "$tool is missing; this needs Xcode's command line tools (xcode-select --install) and CMake (brew install cmake)"
done
for processor in x86_64 arm64; do
  say "Build: $processor"
  cmake --preset "mac-native-$processor" -DBUILD_TESTING=OFF
  cmake --build --preset "mac-native-$processor"
done
# The name that workstations look for goes to a whole file only.
mkdir -p build/mac
lipo -create build/mac-native-x86_64/velmor_cd.dylib build/mac-native-arm64/velmor_cd.dylib -output build/mac/joined
codesign --force --sign - --identifier velmor_cd.dylib build/mac/joined
mv build/mac/joined build/mac/velmor_cd.dylib
say "The module is build/mac/velmor_cd.dylib"
