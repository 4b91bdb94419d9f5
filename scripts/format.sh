# shellcheck shell=bash
# ./dev format: puts every source file into the project's format. With --check it only looks.
source scripts/common.sh
mapfile -t files < <(git ls-files -co --exclude-standard '*.h' '*.cpp' '*.mm')
if [ "${1:-}" = --check ]; then
  clang-format-14 --dry-run -Werror "${files[@]}"
else
  clang-format-14 -i "${files[@]}"
fi
