# shellcheck shell=bash
# ./dev lint [--all]: format, the table of rooms, shell scripts, man pages, and clang-tidy over what ships, many files at
# once as they are compiled. With --all each file by itself, and the tests too: that takes several times as long, and also
# finds an include that is missing and a using-declaration that nobody uses.
source scripts/common.sh

say "Format"
bash scripts/format.sh --check

say "Rooms"
python3 scripts/include_table.py

say "Paths in the pages"
python3 scripts/doc_paths.py

say "Shell scripts"
shellcheck -x -s bash dev .ci/run scripts/*.sh scripts/*/*.sh

say "Man pages"
mandoc -T lint -W warning docs/*.1

# tidy FILE... -- OPTION...: clang-tidy over the files, on every processor.
tidy() {
  local files=()
  while [ "$1" != -- ]; do
    files+=("$1")
    shift
  done
  shift
  printf '%s\0' "${files[@]}" | xargs -0 -P "$(nproc)" -I{} clang-tidy-14 --quiet {} "$@"
}

# sources_of FOLDER PATTERN: what the build there compiles of the project's own. The recorder to preload is made of the
# same sources as the one to link.
sources_of() {
  grep -oP "\"file\": \"\K\\Q$PWD\\E/$2" "$1/compile_commands.json" |
    grep -vE "^$PWD/build/[^/]*/(tests|fuzz)/|velmor_emulated_drive_preload" | sort -u
}

say "clang-tidy"
if [ "${1:-}" = --all ]; then
  cmake --preset sanitize -B build/each-file -DCMAKE_UNITY_BUILD=OFF -DCMAKE_DISABLE_PRECOMPILE_HEADERS=ON >/dev/null
  mapfile -t files < <(sources_of build/each-file '[^"]+\.cpp')
  tidy "${files[@]}" -- -p build/each-file
  exit
fi

[ -f build/sanitize/compile_commands.json ] || cmake --preset sanitize >/dev/null
mapfile -t files < <(sources_of build/sanitize '(build/sanitize/)?(disc|check|ddp|page|programs|host|tools)/[^"]+\.c(pp|xx)')
[ ${#files[@]} -gt 0 ] || fail "no source to lint: the sanitizer build is not configured"
# The rooms of the module, each as one file as well. That sources are included is the way here, and no fault.
mkdir -p build/lint
rooms=()
for room in abi module/plugin module/sink module/burn module/resources module/support module/platform; do
  git ls-files -co --exclude-standard "$room/*.cpp" | grep -vE '_(mac|neon)\.cpp$' | sed 's/.*/#include "&"/' >"build/lint/${room//\//_}.cpp"
  rooms+=("build/lint/${room//\//_}.cpp")
done
tidy "${rooms[@]}" -- --checks=-bugprone-suspicious-include -- -std=c++20 -I.
tidy "${files[@]}" -- --checks=-bugprone-suspicious-include -p build/sanitize
# What is compiled for the other processor alone.
tidy module/sink/sample_conversion_neon.cpp check/samples/sample_loops_arm64.cpp tools/mac/loader/processor_arm64.cpp -- \
  -- -std=c++20 -I. --target=aarch64-linux-gnu
