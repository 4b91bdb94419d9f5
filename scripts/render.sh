# shellcheck shell=bash
# ./dev render [options] INPUT... -o ALBUM.cue: builds velmor-render when needed and runs it where the person stands.
source scripts/common.sh
bash scripts/build.sh >/dev/null
program=$PWD/build/release/velmor-render
cd "$VELMOR_CALLER_DIR" || fail "the folder this was called from is gone"
exec "$program" "$@"
