# shellcheck shell=bash
# ./dev mac: builds build/mac/velmor_cd.dylib, the module for macOS (x86-64, 10.13 and later), on Linux.
bash scripts/setup.sh >&2
bash scripts/setup_mac.sh >&2
source scripts/common.sh
configure_and_build mac
