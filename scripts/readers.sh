# shellcheck shell=bash
# ./dev readers [--pairs N] [--seed N] [--for READER,...] [--edits PATTERN] [--table FILE]: hundreds of sheets that differ
# from a good one by one edit, and pairs of edits drawn by the seed, before every installed reader of cue sheets. Prints
# each answer that velmor-cdcheck --for that reader does not foretell, and each refusal of the second sheet that --portable
# makes of one and does not tell of, and fails when there is one.
bash scripts/setup.sh >&2
source scripts/common.sh

say "Building velmor-cdcheck and what runs the readers"
quiet_build readers configure_and_build release cdcheck_reader_matrix
build/release/tests/cdcheck_reader_matrix --jobs "$(nproc)" "$@"
