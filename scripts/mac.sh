# shellcheck shell=bash
# ./dev mac: builds build/mac/velmor_cd.dylib, the module for macOS, on Linux: for Intel (10.13 and later) and for Apple
# silicon (11.0 and later) in one file, each signed ad hoc by the linker.
bash scripts/setup.sh >&2
bash scripts/setup_mac.sh >&2
source scripts/common.sh
for processor in x86_64 arm64; do
  configure_and_build "mac-$processor"
done
# The name that workstations look for goes to a whole file only.
mkdir -p build/mac
llvm-lipo-14 -create build/mac-x86_64/velmor_cd.dylib build/mac-arm64/velmor_cd.dylib -output build/mac/joined
mv build/mac/joined build/mac/velmor_cd.dylib
