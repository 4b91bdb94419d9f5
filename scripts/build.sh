# shellcheck shell=bash
# ./dev build [PRESET]: sets up and builds; the default preset is release.
bash scripts/setup.sh >&2
source scripts/common.sh
configure_and_build "${1:-release}"
