# shellcheck shell=bash
# ./dev mutate [COUNT] [ROOM...]: changes the code in COUNT places, one at a time and each in a copy of the checkout
# (build/mutate), and prints the changes that no test notices. tools/mutate has the rest; --help lists the options.
bash scripts/setup.sh >&2
source scripts/common.sh

# A cache would keep thousands of objects that nobody asks for again. The parser's bindings belong to Debian's Python.
export CCACHE_DISABLE=1 PYTHONDONTWRITEBYTECODE=1
exec /usr/bin/python3 tools/mutate/campaign.py "$@"
