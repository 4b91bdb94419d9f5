# shellcheck shell=bash
# ./dev clean: removes everything that was built.
source scripts/common.sh
rm -rf build
echo "dev: build/ is gone"
