// Construction, the host's queries, and the end of a render.
#include "module/sink/pcm_sink_iso.h"

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <new>

#include "abi/host_functions.h"
#include "abi/localisation.h"
#include "abi/sink_registration.h"
#include "module/burn/burn_dialog.h"
#include "module/sink/config_dialog.h"
#include "module/sink/cue_sheet.h"
#include "module/sink/marker_names.h"
#include "module/sink/project_marks.h"
#include "module/support/ascii_case.h"
#include "module/support/cd_units.h"

namespace {

constexpr const char* kDiscKeyPrefix = "CUE:DISC_";

/// A writer as both files use it: locked, cached, 131072 bytes of buffer. Null when it could not be
/// opened.
std::unique_ptr<YDK_FileWrite> openWriter(const char* filename) {
  std::unique_ptr<YDK_FileWrite> writer(new (std::nothrow)
                                            YDK_FileWrite(filename, 0, 8192, 16, 16, false, false));
  if (writer && writer->fd < 0) writer.reset();
  return writer;
}

int answer(void* result, int value) {
  if (!result) return 0;
  *static_cast<int*>(result) = value;
  return 1;
}

}  // namespace

PCM_sink_iso::PCM_sink_iso(const char* filename, void* cfg, int cfg_len, int /*nch*/, int /*srate*/,
                           bool /*buildpeaks*/) {
  if (!filename || !nameFiles(filename) || !openFiles(filename)) return;
  readMetadata();
  readConfig(cfg, cfg_len);
  if (!m_track_starts.Add(m_disc_leadin_ms / 1000.0)) {
    closeFiles();
    return;
  }
  if (m_track_mode == kTracksFromMarkers) nameFirstTrack();
  writeLeadIn(m_disc_leadin_ms);
}

PCM_sink_iso::~PCM_sink_iso() {
  // The files first, since the host may look at them while it is still inside the delete; then the
  // titles and the metadata; then the members' own buffers, the last one first.
  closeFiles();
  m_track_names.Empty(true);
  m_metadata.Clear();
}

void PCM_sink_iso::closeFiles() {
  m_cuefile.reset();
  m_binfile.reset();
}

/// False for a four-character name without a dot, where there is nothing to replace by ".bin", and
/// without memory for the names: one cut short would truncate somebody else's file.
bool PCM_sink_iso::nameFiles(const char* filename) {
  const auto length = static_cast<int>(strlen(filename));
  int stem = length;
  m_cuefn.Set(filename);
  if (length == 4 || (length > 4 && compareIgnoringCase(filename + length - 4, ".cue") == 0)) {
    const char* const dot = strrchr(filename, '.');
    if (!dot) return false;
    stem = static_cast<int>(dot - filename);
  } else {
    m_cuefn.Append(".cue");
  }
  m_binfn.__doSet(0, filename, stem, 0);
  m_binfn.Append(".bin");
  return m_cuefn.GetLength() >= length && m_binfn.GetLength() == stem + 4;
}

bool PCM_sink_iso::openFiles(const char* filename) {
  m_cuefile = openWriter(filename);
  if (m_cuefile) m_binfile = openWriter(m_binfn.Get());
  if (!m_binfile) closeFiles();
  return isUsable();
}

void PCM_sink_iso::readMetadata() {
  if (!EnumCurrentSinkMetadata) return;
  const size_t prefix = strlen(kDiscKeyPrefix);
  for (int i = 0;; ++i) {
    const char* key = nullptr;
    const char* const value = EnumCurrentSinkMetadata(i, &key);
    if (!value) break;
    if (!key || !value[0] || strncmp(key, kDiscKeyPrefix, prefix) != 0) continue;
    char* const copy = strdup(value);
    if (copy && !m_metadata.AppendUnsorted(key + prefix, copy)) freecharptr(copy);
  }
  m_metadata.SortKeys();
}

void PCM_sink_iso::readConfig(const void* cfg, int cfg_len) {
  const SinkConfig config = readSinkConfig(cfg, cfg_len);
  m_disc_leadin_ms = std::max(config.disc_leadin_ms, 0);
  m_track_leadin_ms = std::max(config.track_leadin_ms, 0);
  m_burn_after = config.burn_after_render;
  m_track_mode = config.track_mode;
  m_hash_only = config.hash_markers_only;
}

/// The first marker that can name a track decides: within four seconds of the start it names
/// track 1.
void PCM_sink_iso::nameFirstTrack() {
  int index = m_marker_idx;
  for (ProjectMark mark = markAt(index, m_st); mark.next; mark = markAt(index, m_st)) {
    if (!mark.is_region && mark.start >= 0.0 && namesATrack(mark.name, m_hash_only != 0)) {
      addTrackName(mark.start <= kShortestTrack ? titleOf(mark.name, m_hash_only != 0) : "");
      return;
    }
    index = mark.next;
  }
  addTrackName("");
}

/// Keeps the titles in step with the tracks even without memory for this one: it is then missing,
/// not the next one's.
void PCM_sink_iso::addTrackName(const char* title) {
  auto* name = new (std::nothrow) YDK_String;
  if (name) name->Set(title);
  if (!m_track_names.Add(name)) delete name;
}

void PCM_sink_iso::GetOutputInfoString(char* buf, int buflen) {
  if (!buf || buflen <= 0) return;
  const char* const format = __localizeFunc("Audio CD Image %dHz %dch", kSectionFormat, 1);
  snprintf(buf, static_cast<size_t>(buflen), format, m_srate, m_nch);
}

const char* PCM_sink_iso::GetFileName() {
  return m_cuefn.Get();
}

int PCM_sink_iso::GetNumChannels() {
  return m_nch;
}

double PCM_sink_iso::GetLength() {
  return static_cast<double>(m_frames_written) / static_cast<double>(m_srate);
}

long long PCM_sink_iso::GetFileSize() {
  return m_filesize;
}

void PCM_sink_iso::WriteMIDI(MIDI_eventlist* /*events*/, int /*len*/, double /*samplerate*/) {}

int PCM_sink_iso::GetLastSecondPeaks(int /*size*/, double* /*buf*/) {
  return 0;
}

int PCM_sink_iso::Extended(int call, void* p1, void* p2, void* /*p3*/) {
  switch (call) {
    case kSinkQueryBitDepth:
      return answer(p1, kImageBits);
    case kSinkQueryFormat:
      if (!p1 || !p2) return 0;
      answer(p1, m_srate);
      return answer(p2, m_nch);
    case kSinkRenderFinished:
      finishRender(p1);
      return 1;
    default:
      return 0;
  }
}

void PCM_sink_iso::finishRender(void* parent) {
  if (!isUsable()) return;
  padToSector();
  writeCueSheet();
  m_binfile.reset();
  m_cuefile.reset();
  if (!parent) parent = GetMainHwnd();
  if (m_burn_after && GetLength() > 0.0) {
    BurnCD(parent, m_binfn.Get(), m_cuefn.Get(), &m_track_names, m_track_starts.Get(),
           m_track_starts.GetSize(), GetLength());
  }
}

void PCM_sink_iso::writeCueSheet() {
  const CueSheet sheet{m_metadata,        m_binfn.Get(),   m_track_starts,
                       m_track_src_pos,   m_track_src_len, m_disc_leadin_ms,
                       m_track_leadin_ms, GetStartTime(),  GetLength()};
  writeCueSheetText(sheet, m_track_names, *m_cuefile);
}
