// The text of the cue sheet.
#pragma once

#include "module/support/assoc_array.h"
#include "module/support/file_write.h"
#include "module/support/ptr_list.h"
#include "module/support/typed_buf.h"
#include "module/support/ydk_string.h"

/// What a sheet is written from. Points at the sink's fields; nothing is owned.
struct CueSheet {
  const YDK_StringKeyedArray<char*>& metadata;  ///< disc fields by key ("TITLE", …)
  const char* image_path;                       ///< only its base name is written
  const YDK_TypedBuf<double>& track_starts;     ///< image seconds, one per track
  const YDK_TypedBuf<double>& source_starts;    ///< project seconds; may be shorter
  const YDK_TypedBuf<double>& source_lengths;   ///< seconds; may be shorter
  int disc_leadin_ms;
  int track_leadin_ms;
  double project_start;  ///< stands in for a missing source start
  double image_length;   ///< seconds; gives the last track its length
};

/// Writes the whole sheet, CRLF lines, in one pass. Tags of the tracks come from the project's
/// markers. `titles` may be shorter than the list of tracks; quotes in the titles of the tracks are
/// replaced there, in the list, by apostrophes, since the burn dialog shows what the sheet says.
void writeCueSheetText(const CueSheet& sheet, YDK_PtrList<YDK_String>& titles, YDK_FileWrite& out);
