# shellcheck shell=bash
# demo_readers.sh FOLDER: has programs of other makers read FOLDER/album.cue and its image; fails when one disagrees.
source scripts/common.sh
folder=$1
cd "$folder" || fail "the demo's folder is gone"

# metaflac takes sheets for a FLAC file of the image's length.
flac --silent --force --force-raw-format --endian=little --sign=signed --channels=2 --bps=16 --sample-rate=44100 \
  album.bin -o album.flac
metaflac --import-cuesheet-from=album.cue album.flac
codes=$(metaflac --list --block-type=CUESHEET album.flac | grep -cE 'media catalog number: 0731452345622|ISRC: USABC260000[1-5]')
[ "$codes" = 6 ] || fail "metaflac sees $codes of 6 codes"
echo "metaflac: takes the sheet; catalogue number and five ISRCs are right"

echo "cuebreakpoints: tracks 2 to 5 begin at $(cuebreakpoints album.cue | tr '\n' ' ')"

chdman createcd -f -i album.cue -o album.chd >/dev/null 2>&1
chdman extractcd -f -i album.chd -o back.cue -ob back.bin >/dev/null 2>&1
cmp album.bin back.bin || fail "the image does not come back from chdman as it went in"
echo "chdman: the image went in and came back, identical to the byte"
rm -f album.flac album.chd back.cue back.bin
