# shellcheck shell=bash
# ./dev faults: every allocation and every system call of velmor-render fails in turn, once and from then on, and every
# allocation of the recording library. A run of all tests takes every system call, but only one allocation in so many;
# this takes every one of both.
bash scripts/setup.sh >&2
source scripts/common.sh

[ $# -eq 0 ] || fail "usage: ./dev faults"
say "Building velmor-render and the tests that make its calls fail"
configure_and_build release render_fault_test recording_library_tests | tail -n 1
export VELMOR_FAULT_STEP=1
build/release/tests/recording_library_tests --gtest_filter='*Faults*'
build/release/tests/render_fault_test
