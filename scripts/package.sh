# shellcheck shell=bash
# ./dev package: makes the archives people install from, one for macOS and one for Linux, in build/package.
bash scripts/setup.sh >&2
bash scripts/setup_mac.sh >&2
source scripts/common.sh

version=$(sed -n 's/^project(velmor_cd VERSION \([0-9.]*\).*/\1/p' CMakeLists.txt)
[ -n "$version" ] || fail "CMakeLists.txt names no version"
say "Building"
configure_and_build mac | tail -n 1
configure_and_build release velmor_cd velmor-render velmor_recording velmor-cdcheck | tail -n 1

out=$PWD/build/package
rm -rf "$out"
mkdir -p "$out"

# pack NAME: the folder NAME under build/package as an archive that is the same for the same contents
pack() {
  local time
  time=$(git log -1 --format=%ct 2>/dev/null || echo 0)
  tar -C "$out" --sort=name --owner=0 --group=0 --numeric-owner --mtime="@$time" -cf - "$1" | gzip -9n >"$out/$1.tar.gz"
  echo
  echo "$1.tar.gz, $(stat -c %s "$out/$1.tar.gz") bytes:"
  tar -tzf "$out/$1.tar.gz" | sed 's/^/  /'
}

mac=velmor_cd-$version-macos-x86_64
mkdir "$out/$mac"
install -m 755 build/mac/velmor_cd.dylib "$out/$mac/"
install -m 644 docs/package/INSTALL.macos.txt "$out/$mac/INSTALL.txt"
install -m 644 docs/package/LICENCES.macos.txt "$out/$mac/LICENCES.txt"

linux=velmor_cd-$version-linux-x86_64
mkdir -p "$out/$linux/man"
for file in velmor_cd.so velmor_recording.so velmor-render velmor-cdcheck; do
  install -m 755 -s "build/release/$file" "$out/$linux/"
done
install -m 644 docs/velmor-render.1 docs/velmor-cdcheck.1 "$out/$linux/man/"
install -m 644 docs/package/INSTALL.linux.txt "$out/$linux/INSTALL.txt"
install -m 644 docs/package/LICENCES.linux.txt "$out/$linux/LICENCES.txt"

say "The archives, in build/package"
pack "$mac"
pack "$linux"

# What is packed must work where it is unpacked.
"$out/$linux/velmor-render" --version >/dev/null || fail "the packed velmor-render does not start"
