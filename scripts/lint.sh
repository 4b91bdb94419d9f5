# shellcheck shell=bash
# ./dev lint [--all]: format, shell scripts, man pages, and clang-tidy over what ships (with --all also the tests).
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
[ -f build/sanitize/compile_commands.json ] || cmake --preset sanitize >/dev/null
pattern='^(plugin|sink|burn|support|resources|platform|host|tools)/'
[ "${1:-}" = --all ] && pattern='.'
mapfile -t sources < <(git ls-files -co --exclude-standard '*.cpp' | grep -E "$pattern" |
  while read -r file; do
    if grep -qF "\"file\": \"$PWD/$file\"" build/sanitize/compile_commands.json; then echo "$file"; fi
  done)
[ ${#sources[@]} -gt 0 ] || fail "no source to lint: the sanitizer build is not configured"
printf '%s\n' "${sources[@]}" | xargs -P "$(nproc)" -n 2 clang-tidy-14 --quiet -p build/sanitize
