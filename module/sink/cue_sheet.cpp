#include "module/sink/cue_sheet.h"

#include <cstdarg>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <initializer_list>

#include "module/sink/marker_names.h"
#include "module/sink/project_marks.h"
#include "module/support/cd_units.h"

namespace {

constexpr int kLineBuffer = 4096;
// Markers up to a millisecond before a track still belong to it: hosts store positions rounded.
constexpr double kTagAllowance = 0.001;

/// Writes one line; what the buffer cannot hold is cut, its end included.
__attribute__((format(printf, 2, 3))) void writeLine(YDK_FileWrite& out, const char* format, ...) {
  char line[kLineBuffer];
  va_list args;
  va_start(args, format);
  vsnprintf(line, sizeof(line), format, args);
  va_end(args);
  out.Write(line, static_cast<int>(strlen(line)));
}

/// An INDEX line at `seconds`. Milliseconds are truncated before they become sectors; it never
/// rounds up.
void writeIndex(YDK_FileWrite& out, int number, double seconds) {
  const int64_t whole = wholePart(seconds);
  const int64_t milliseconds = wholePart(seconds * 1000.0) % 1000;
  writeLine(out, "    INDEX %02d %02lld:%02lld:%02lld\r\n", number,
            static_cast<long long>(whole / 60), static_cast<long long>(whole % 60),
            static_cast<long long>(milliseconds * 75 / 1000));
}

void writeDiscLines(const CueSheet& sheet, YDK_FileWrite& out) {
  for (const char* key : {"REM", "TITLE", "PERFORMER", "SONGWRITER", "CATALOG"}) {
    char* const* value = sheet.metadata.Find(key);
    if (value && (*value)[0]) writeLine(out, "%s \"%s\"\r\n", key, *value);
  }
}

const char* baseName(const char* path) {
  const char* name = path;
  for (const char* c = path; *c; ++c) {
    if (*c == '/' || *c == '\\') name = c + 1;
  }
  return name;
}

/// A quote would end the field: the title's become apostrophes.
void replaceQuotes(YDK_String& title) {
  for (char* c = title.Get(); (c = strchr(c, '"'));) *c = '\'';
}

void writeTitle(const char* title, YDK_FileWrite& out) {
  if (title[0]) writeLine(out, "    TITLE \"%s\"\r\n", title);
}

/// The tags that markers in the track's project span give it; of each kind the first one counts.
void writeTags(const CueSheet& sheet, int track, YDK_FileWrite& out) {
  const double start = track < sheet.source_starts.GetSize() ? sheet.source_starts.Get()[track]
                                                             : sheet.project_start;
  const double length = track < sheet.source_lengths.GetSize()
                            ? sheet.source_lengths.Get()[track]
                            : sheet.image_length - sheet.track_starts.Get()[track];
  const double from = start - kTagAllowance;
  const double to = from + length;
  YDK_AssocArrayImpl<const char*, char> written(YDK_assocarray_cmpstr, dupstr, freestr);
  int index = 0;
  for (ProjectMark mark = markStartAt(index, 0.0); mark.next; mark = markStartAt(index, 0.0)) {
    index = mark.next;
    if (mark.position < from) continue;
    if (mark.position >= to) break;
    const MarkerTag* const tag = mark.name ? tagOf(mark.name) : nullptr;
    if (!tag || written.Find(tag->key)) continue;
    writeLine(out, "    %s \"%s\"\r\n", tag->key, mark.name + kTagPrefixLength);
    written.Insert(tag->key, 1);
  }
}

void writeIndices(const CueSheet& sheet, int track, YDK_FileWrite& out) {
  const double start = sheet.track_starts.Get()[track];
  if (track == 0) {
    if (sheet.disc_leadin_ms != 0) writeIndex(out, 0, 0.0);
  } else if (sheet.track_leadin_ms != 0) {
    // Whole seconds only, even where the silence in the image is longer. A lead-in longer than an
    // image can hold would put the gap before the disc's start.
    const int gap_seconds = sheet.track_leadin_ms / 1000;
    const double gap_start = start - gap_seconds;
    writeIndex(out, 0, gap_start > 0.0 ? gap_start : 0.0);
  }
  writeIndex(out, 1, start);
}

}  // namespace

void writeCueSheetText(const CueSheet& sheet, YDK_PtrList<YDK_String>& titles, YDK_FileWrite& out) {
  writeDiscLines(sheet, out);
  writeLine(out, "FILE \"%.1000s\" BINARY\r\n", baseName(sheet.image_path));
  for (int track = 0; track < sheet.track_starts.GetSize(); ++track) {
    writeLine(out, "  TRACK %02d AUDIO\r\n", track + 1);
    if (YDK_String* const title = titles.Get(track)) {
      replaceQuotes(*title);
      writeTitle(title->Get(), out);
    }
    writeTags(sheet, track, out);
    writeIndices(sheet, track, out);
  }
}
