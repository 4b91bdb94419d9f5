# shellcheck shell=bash
# ./dev package: makes what people install from, in build/package: an archive for macOS, and for Linux an archive and a
# Debian package. Each holds what `cmake --install` puts in place.
bash scripts/setup.sh >&2
bash scripts/setup_mac.sh >&2
source scripts/common.sh

say "Building"
bash scripts/mac.sh | tail -n 1
configure_and_build release velmor_cd velmor-render velmor_recording velmor-cdcheck velmor-ddp | tail -n 1

version=$(sed -n 's/^CMAKE_PROJECT_VERSION:.*=//p' build/release/CMakeCache.txt)
[ -n "$version" ] || fail "CMakeLists.txt names no version"
out=$PWD/build/package
rm -rf "$out"
mkdir -p "$out/unpacked"
# With one time in all of them, the same contents make the same archives.
SOURCE_DATE_EPOCH=$(git log -1 --format=%ct 2>/dev/null || echo 0)
export SOURCE_DATE_EPOCH

# stage PRESET NAME [OPTION]: the install tree of the preset in the folder NAME
stage() {
  cmake --install "build/$1" --prefix "$out/$2" ${3:+"$3"} >"$out/$2.log" ||
    fail "installing '$1' failed; build/package/$2.log says why"
}

# pack NAME: the folder NAME as the archive NAME.tar.gz
pack() {
  tar -C "$out" --sort=name --owner=0 --group=0 --numeric-owner --mtime="@$SOURCE_DATE_EPOCH" -cf - "$1" |
    gzip -9n >"$out/$1.tar.gz"
  rm -r "${out:?}/$1" "$out/$1.log"
  echo
  echo "$1.tar.gz, $(stat -c %s "$out/$1.tar.gz") bytes:"
  tar -tzf "$out/$1.tar.gz" | sed 's/^/  /'
}

# check_linux FOLDER: what lies in the folder as in an install prefix must run from there.
check_linux() {
  [ "$("$1/bin/velmor-render" --version)" = "$(build/release/velmor-render --version)" ] ||
    fail "velmor-render in $1 does not start"
  "$1/bin/velmor-render" --list-drives >/dev/null || fail "velmor-render in $1 does not find its recording library"
  man -w -M "$1/share/man" velmor-render velmor-cdcheck velmor-ddp >/dev/null || fail "the manual pages are not in $1"
}

say "The archives, in build/package"
mac=velmor_cd-$version-macos
linux=velmor_cd-$version-linux-x86_64
# A dylib that is stripped here would lose its signature. The tree is that of either processor, the file the one for both.
stage mac-x86_64 "$mac"
cp build/mac/velmor_cd.dylib "$out/$mac/"
pack "$mac"
stage release "$linux" --strip
pack "$linux"
tar -C "$out/unpacked" -xzf "$out/$linux.tar.gz"
check_linux "$out/unpacked/$linux"

say "The Debian package, in build/package"
cpack --config build/release/CPackConfig.cmake -B "$out" >"$out/cpack.log" 2>&1 || {
  tail -n 20 "$out/cpack.log" >&2
  fail "making the Debian package failed; the lines above say why"
}
rm -r "$out/_CPack_Packages" "$out/cpack.log"
deb=("$out"/velmor-cd_*.deb)
dpkg-deb --info "${deb[0]}" | sed -n 's/^ \(Package\|Version\|Architecture\|Depends\):/  &/p'
dpkg-deb --extract "${deb[0]}" "$out/unpacked/deb"
check_linux "$out/unpacked/deb/usr"
diff <(cd "$out/unpacked/$linux" && find . -type f | sort) <(cd "$out/unpacked/deb/usr" && find . -type f | sort) >&2 ||
  fail "the archive and the Debian package do not hold the same files"
for library in libsndfile1 libsoxr0 libburn4 libgcrypt20 libebur128 libdiscid0; do
  dpkg-deb --field "${deb[0]}" Depends | grep -q "$library" || fail "the Debian package does not ask for $library"
done
rm -r "$out/unpacked"
