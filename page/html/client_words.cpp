#include "page/html/client_words.h"

#include <map>

namespace velmor::page {

namespace {

using Words = std::map<std::string_view, std::string_view>;

/// What is heard, and what is printed or shown by a player.
const Words& ofTheMusic() {
  static const Words kWords = {
      {"clipped", "The sound is cut off at its loudest points, which may be heard as distortion."},
      {"silent-track", "Nothing can be heard on this track: it is silent from start to end."},
      {"byte-order-swapped",
       "The music is probably stored the other way round than the sheet says: then it is noise."},
      {"channel-silent", "Nothing is heard from one of the two sides."},
      {"channels-same", "Both sides play the same: the music is not in stereo."},
      {"sound-in-pause", "The pause before this track is not silent."},
      {"start-cut-into-sound",
       "This track starts in the middle of a sound, which is heard as a click."},
      {"silence-at-start", "After this track is chosen, nothing is heard for a while."},
      {"silence-at-end", "The disc goes on in silence after its last sound."},
      {"starts-inside-sector", "A bit of the track before may be heard when this one is chosen."},
      {"start-not-told", "A bit of the track before may be heard when this one is chosen."},
      {"track-under-4-s", "This track is shorter than a disc allows."},
      {"lead-in-on-top", "Something lies before the first track that players skip."},
      {"disc-too-long", "There is more music than fits on a disc."},
      {"over-79-57", "The disc is longer than most blanks are."},
      {"over-74-minutes", "The disc needs a blank of 80 minutes."},
      {"not-audio", "This track holds data and not music."},
      {"catalog-form", "The disc's bar code number is not one."},
      {"catalog-check-digit", "The disc's bar code number has a wrong digit."},
      {"catalog-12-digits", "The disc's bar code number lacks its first digit."},
      {"catalog-quoted", "Some programs do not read the disc's bar code number."},
      {"isrc-form", "The recording's code (ISRC) is not one."},
      {"isrc-twice", "Two tracks have the same recording code (ISRC)."},
      {"isrc-quoted", "Some programs do not read the recording's code (ISRC)."},
      {"isrc-dashes",
       "The recording's code (ISRC) is written with dashes, which do not belong there."},
      {"isrc-lower-case", "The recording's code (ISRC) is written in small letters."},
      {"empty-isrc", "There is room for a recording code (ISRC) but no code."},
      {"repeated-isrc", "This track has two recording codes (ISRC)."},
      {"empty-text", "A title or a name is empty."},
      {"empty-performer", "A performer is empty."},
      {"text-too-long", "A title or a name is too long for some programs."},
      {"quote-in-text", "A quotation mark in a title or a name is lost with some programs."},
      {"backslash-at-end", "A title or a name ends in a character that confuses some programs."},
      {"control-character", "A title or a name has a character that cannot be shown."},
      {"field-not-for-all", "Some tracks lack a text that the others have."},
      {"cd-text-full", "Titles and names are too long for the disc's memory of texts."},
      {"cd-text-over", "Titles and names are too long for the disc's memory of texts."},
      {"utf8-text",
       "Accents or other letters of a title or a name are shown wrongly by some programs."},
      {"latin1-text",
       "Accents or other letters of a title or a name are shown wrongly by some programs."},
      {"copy-flags", "The disc says both that copies are allowed and that they are limited."},
  };
  return kWords;
}

/// What is wrong with the files that are handed over.
const Words& ofTheFiles() {
  static const Words kWords = {
      {"image-missing", "The file with the music is not there."},
      {"image-empty", "The file with the music is empty."},
      {"image-unreadable", "The file with the music cannot be read to its end."},
      {"image-not-whole-sectors",
       "The file with the music ends in a fragment that some programs cut off."},
      {"image-named-otherwise",
       "One program looks for the file with the music under another name."},
      {"index-past-end", "A track is said to start behind the end of the music."},
      {"audio-not-checked", "The music is in a form that was not looked into."},
      {"audio-breaks-off", "A file with music breaks off before its stated end."},
      {"audio-format", "The music is in a form that is not that of a disc."},
      {"audio-unreadable", "A file with music cannot be opened as one."},
      {"flac-as-wave", "The music is packed, and some programs would play the pack as noise."},
      {"header-in-image",
       "The file with the music begins with something that is heard as a click."},
      {"audio-not-taken", "The music is in a form that a plant does not take."},
      {"not-of-its-type", "The file with the music is not what the sheet says."},
      {"byte-order",
       "The music is said to be stored the other way round than usual; in the wrong one it is "
       "noise."},
      {"file-from-working-folder", "One program finds the music only from the sheet's folder."},
      {"raw-byte-order", "One program needs to be told how the music is stored."},
      {"file-type", "The sheet names a kind of file that does not exist."},
      {"file-without-track", "A file that the sheet names is not on the disc."},
      {"file-starts-late", "Some of the music is on no track."},
      {"file-ends-inside-sector", "Two files of music cannot be joined without a gap."},
      {"too-many-files", "The sheet names more files than a disc can have tracks."},
      {"no-file", "The sheet does not say where the music is."},
      {"quote-in-file-name", "The file with the music has a name that some programs cannot read."},
      {"no-tracks", "There are no tracks."},
      {"too-many-tracks", "There are more than 99 tracks."},
      {"track-number", "The tracks are not numbered one after the other."},
      {"first-track", "The first track is not number 1."},
      {"first-track-not-1", "The first track is not number 1."},
      {"no-index-01", "It is not said where a track starts."},
      {"index-order", "The marks inside a track are not numbered one after the other."},
      {"indices-descend", "A mark lies before the one that it should follow."},
      {"empty-gap", "A pause is announced that has no length."},
      {"gap-thrown-away", "One program loses what lies between two tracks."},
      {"lead-in-is-track-0", "One program makes a track of its own of what lies before track 1."},
      {"time-out-of-range", "A time is written in a way that no clock shows."},
      {"minutes-over-99", "A time lies behind the end of any disc."},
      {"bad-number", "A number or a time cannot be read."},
      {"unknown-track-mode", "It is not clear what a track is."},
      {"unknown-flag", "A track has a mark that does not exist."},
      {"unknown-command", "The sheet has a line that is passed over."},
      {"misplaced-command", "The sheet has a line in the wrong place."},
      {"repeated-command", "The sheet says the same thing twice, and not alike."},
      {"line-break-in-value", "A text goes over two lines, which most programs refuse."},
      {"quote-not-closed", "A text in the sheet has no end."},
      {"line-cut", "A text was too long and was cut."},
      {"text-after-value", "The sheet has something behind a text that does not belong there."},
      {"carriage-return-alone", "The sheet's lines end in a way that most programs do not know."},
      {"stray-carriage-return",
       "Some of the sheet's lines end in a way that some programs do not know."},
      {"no-last-line-end", "The sheet's last line is not ended, and some programs lose it."},
      {"lower-case-command", "Some programs do not read commands in small letters."},
      {"lower-case-file-type", "Some programs do not read a kind of file in small letters."},
      {"byte-order-mark",
       "The sheet begins with an invisible mark that some programs stumble over."},
      {"not-a-text", "This is not a sheet but another kind of file."},
      {"more-problems", "Many more lines of the sheet cannot be read."},
      {"cd-text-file", "Texts for the disc are in a file of their own, which has to go along."},
      {"set-holds-audio-only", "A set for a plant takes music only."},
      {"master-id", "The master's identifier is not one."},
  };
  return kWords;
}

/// What some programs stumble over, though the sheet says what is meant.
const Words& ofTheWriting() {
  static const Words kWords = {
      {"first-line", "One program wants another first line in the sheet."},
      {"blank-line", "One program does not take a sheet with a line of blanks."},
      {"blank-at-end", "Blanks at the end of a line confuse some programs."},
      {"blanks-between", "Blanks in a row inside a line confuse some programs."},
      {"tab-between", "A tab inside a line confuses some programs."},
      {"command-out-of-place", "A line stands where some programs do not look for it."},
      {"command-within", "One program takes a part of a text for a line of its own."},
      {"new-command", "The sheet has a line that older programs do not know."},
      {"remark-without-value", "One program loses the line behind an empty remark."},
      {"text-without-value", "Some programs lose the line behind an empty text."},
      {"flac-remark", "The sheet repeats something about the music and has it wrong."},
      {"text-unquoted", "A title or a name without quotes is read wrongly by some programs."},
      {"file-unquoted", "Some programs do not read the name of a file without quotes."},
      {"odd-file-name", "One program does not take the name of the file with the music."},
      {"image-not-bin", "One program does not take the file with the music by its ending."},
      {"type-not-for-all", "Some programs do not take this kind of file with music."},
      {"several-files", "The music is in several files, which some programs do not take."},
      {"pause-begins-file", "One program cuts out a pause with which a file begins."},
      {"pregap", "Some programs leave out the silence that is added before a track."},
      {"postgap", "Some programs leave out the silence that is added behind a track."},
      {"index-02", "A mark inside a track is put in the wrong place by one program."},
      {"index-digits", "Some programs do not read a mark's number of one digit."},
      {"time-digits", "Some programs do not read times with more or fewer digits than usual."},
      {"one-track", "One program does not split a disc that has one track only."},
  };
  return kWords;
}

/// What is wrong with a set for a plant.
const Words& ofTheSet() {
  static const Words kWords = {
      {"audio-length", "The music in the set is longer or shorter than it says."},
      {"file-missing", "A file of the set is not there."},
      {"file-unreadable", "A file of the set cannot be read to its end."},
      {"file-name", "The set names a file that it should not reach; do not trust it."},
      {"check-sum", "A file of the set is not as it was made: it was changed on its way."},
      {"check-sum-line", "The set's list of check sums has a line that cannot be read."},
      {"no-check-sums", "Nothing tells whether the set arrived as it was made."},
      {"not-in-check-sums", "Nothing tells whether one of the set's files arrived as it was made."},
      {"catalogue-conflict", "The set gives two different bar code numbers."},
      {"catalogue-once", "The set gives the bar code number in one of two places only."},
      {"isrc-conflict", "The set gives a track two different recording codes (ISRC)."},
      {"isrc-late", "A recording code (ISRC) stands in an unusual place of the set."},
      {"control-conflict", "The set contradicts itself about what a track is."},
      {"first-pregap", "The pause that every disc has before track 1 is not right."},
      {"pregap-field", "The set contradicts itself about the pause before track 1."},
      {"times-descend", "A track of the set starts before the one that it should follow."},
      {"lead-out", "The end of the disc is not right in the set."},
      {"behind-lead-out", "The set has something behind the end of the disc."},
      {"no-lead-in", "The set's list of times does not begin as it must."},
      {"lead-in-control", "The set's list of times does not begin as it must."},
      {"lead-in-isrc", "A recording code (ISRC) stands where there is no track."},
      {"pq-length", "The set's list of times was cut, or is another kind of file."},
      {"pq-field", "The set's list of times has an entry that cannot be read."},
      {"packet-mark", "A description in the set has an entry that cannot be read."},
      {"reserved-field", "A description in the set has something where nothing should be."},
      {"level", "The set is not of the kind that plants take."},
      {"not-a-cd", "The set is not that of a CD."},
      {"identifier-length", "The set's identifier was cut or changed."},
      {"map-length", "The set's table of contents was cut or changed."},
      {"name-width", "The set's table of contents has an entry that cannot be read."},
      {"no-audio", "The set names no music."},
      {"no-pq", "The set has no list of times."},
      {"second-audio", "The set has its music in several parts, which is not supported."},
      {"second-stream", "The set has the same list twice."},
      {"sector-form", "The music in the set is stored in a form that is not supported."},
      {"stream-kind", "The set holds something else than music."},
      {"stream-length", "A file of the set is longer or shorter than it says."},
      {"stream-start", "The music of the set does not begin at the begin of the disc."},
      {"stream-type", "The set holds something else than music."},
      {"cd-text-pack", "The set's titles and names were cut or changed."},
      {"cd-text-odd", "The set's titles and names are stored in an unusual way."},
      {"cd-text-tracks", "The set's titles and names are those of another disc."},
  };
  return kWords;
}

}  // namespace

std::string_view clientWords(std::string_view rule) {
  for (const Words* words : {&ofTheMusic(), &ofTheFiles(), &ofTheWriting(), &ofTheSet()})
    if (const auto found = words->find(rule); found != words->end()) return found->second;
  return {};
}

}  // namespace velmor::page
