# shellcheck shell=bash
# ./dev lint [--all]: format, shell scripts, man pages, and clang-tidy over what ships, many files at once as they are
# compiled. With --all each file by itself, and the tests too: that takes several times as long, and also finds an include
# that is missing and a using-declaration that nobody uses.
source scripts/common.sh

say "Format"
bash scripts/format.sh --check

say "Shell scripts"
shellcheck -x -s bash dev .ci/run scripts/*.sh

if compgen -G 'docs/*.1' >/dev/null; then
  say "Man pages"
  mandoc -T lint -W warning docs/*.1
fi

say "clang-tidy"
if [ "${1:-}" = --all ]; then
  units=build/each-file
  cmake --preset sanitize -B "$units" -DCMAKE_UNITY_BUILD=OFF >/dev/null
  files='"file": "\K[^"]+\.cpp'
  checks=
else
  units=build/sanitize
  [ -f "$units/compile_commands.json" ] || cmake --preset sanitize >/dev/null
  files='"file": "\K[^"]+/(abi|plugin|sink|burn|support|resources|platform|host|tools)/[^"]+\.c(pp|xx)'
  # Files of many sources are the way here.
  checks=-bugprone-suspicious-include
fi
# The recorder to preload is made of the same sources as the one to link.
mapfile -t sources < <(grep -oP "$files" "$units/compile_commands.json" |
  grep -vE "^$PWD/build/[^/]*/(tests|fuzz)/|velmor_recorder_preload" | sort -u)
[ ${#sources[@]} -gt 0 ] || fail "no source to lint: the sanitizer build is not configured"
printf '%s\n' "${sources[@]}" | xargs -P "$(nproc)" -n 1 clang-tidy-14 --quiet --checks="$checks" -p "$units"
