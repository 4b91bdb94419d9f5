# shellcheck shell=bash
# ./dev faults: every allocation and every system call of velmor-render fails in turn, once and from then on, and every
# allocation of the recording library. A run of all tests takes one call in so many; this takes every one.
bash scripts/setup.sh >&2
source scripts/common.sh

[ $# -eq 0 ] || fail "usage: ./dev faults"
say "Building velmor-render and the tests that make its calls fail"
configure_and_build release render_fault_test recording_fault_test | tail -n 1
export VELMOR_FAULT_STEP=1
build/release/tests/recording_fault_test
build/release/tests/render_fault_test
