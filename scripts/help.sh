# shellcheck shell=bash
# ./dev help
cat <<'TEXT'
./dev VERB [options]

  demo      render an album of its own to a CD image, show it, have other programs read it, and burn it
            to a recorder without hardware
  shots     make the pictures of the page in docs/images/ anew
  test      build everything (for macOS; with g++; with clang and its sanitizers; the module for 64-bit
            ARM), run all tests, check format and lint, fuzz for a minute; ./dev test NAME runs the tests
            whose name matches; --all adds the long ones in an emulator
  build     build what ships, the tests and the benchmarks into build/release
  render    run velmor-render: ./dev render [options] INPUT... -o ALBUM.cue (--help lists the options)
  bench     measure the speed, in ratios to other ways of doing the same
  coverage  which conditions of the module the tests never saw go one way, and why
  fuzz      fuzz the renders and parsers: ./dev fuzz [MINUTES]; ./dev fuzz --keep makes seeds of what was learnt
  faults    let every allocation and every system call of velmor-render fail in turn (a quarter of an hour)
  readers   compare what every installed reader does with hundreds of spoilt sheets and what velmor-cdcheck
            says (ten minutes); ./dev readers --pairs 300 draws pairs of edits too
  threads   run the tests that have threads under ThreadSanitizer
  mutate    change the code in many small places, one at a time, and print the changes that no test
            notices: ./dev mutate [COUNT] [ROOM...]
  lint      check format, includes, shell scripts, man pages and clang-tidy (--all: each file by itself,
            the tests too)
  format    put every source file into the project's format
  mac       build the module for macOS, Intel and Apple silicon, into build/mac (cross-built on Linux)
  package   make what people install from: archives for macOS and Linux, and a Debian package
  setup     install the Debian packages that are missing
  clean     remove everything that was built

On a Mac there are build, test, clean and help. Every verb installs and builds what it needs first; run it as root or with sudo at hand.
TEXT
