// The image: samples, silences, and the tracks that a block begins.
#include <algorithm>
#include <cassert>
#include <climits>
#include <cstring>

#include "abi/host_functions.h"
#include "abi/sink_registration.h"
#include "module/sink/pcm_sink_iso.h"
#include "module/sink/sample_conversion.h"
#include "module/sink/track_cutter.h"
#include "module/support/cd_units.h"

namespace {

constexpr int kSilencePiece = 1024 * 1024;  ///< bytes

}  // namespace

/// What the host's block still has for the image.
struct PCM_sink_iso::SourceFrames {
  const double* left;
  const double* right;
  int spacing;  ///< from a channel's frame to its next

  void passOver(int64_t frames) {
    left += frames * spacing;
    right += frames * spacing;
  }
};

void PCM_sink_iso::WriteDoubles(double** samples, int len, int nch, int offset, int spacing) {
  if (len <= 0 || !isUsable()) return;  // a finished sink takes nothing more
  const SourceFrames block{samples[0] + offset, samples[nch > 1 ? 1 : 0] + offset, spacing};
  const BlockRest rest{len, static_cast<double>(m_in_frames) / static_cast<double>(m_srate)};
  m_in_frames = static_cast<int>(std::min<int64_t>(int64_t{m_in_frames} + len, INT_MAX));
  if (m_track_mode == kTracksFromMarkers) {
    writeCut(block, MarkerCutter(rest, GetStartTime(), m_hash_only != 0, m_marker_idx));
  } else if (m_track_mode == kTracksFromRegions) {
    writeCut(block, RegionCutter(rest, GetStartTime(), m_marker_idx, m_region_end));
  } else {
    writeFrames(block, len);
  }
}

template <class Cutter>
void PCM_sink_iso::writeCut(SourceFrames block, Cutter cutter) {
  while (!cutter.done()) {
    const CutStep step = cutter.next(trackLength());
    switch (step.action) {
      case CutAction::kWriteFrames:
        writeFrames(block, static_cast<int>(step.frames));
        block.passOver(step.frames);
        break;
      case CutAction::kDropFrames:
        block.passOver(step.frames);
        break;
      case CutAction::kBeginTrackAtMarker:
        startTrack();
        recordMarker(step.title, step.position);
        break;
      case CutAction::kBeginTrackOfRegion:
        startTrack();
        recordRegion(step.title, step.position, step.length);
        break;
      case CutAction::kJoinRegion:
        recordRegion(step.title, step.position, step.length);
        break;
    }
  }
}

double PCM_sink_iso::trackLength() {
  assert(m_track_starts.GetSize() > 0);  // a sink without is not usable
  return GetLength() - m_track_starts.Get()[m_track_starts.GetSize() - 1];
}

void PCM_sink_iso::startTrack() {
  writeLeadIn(m_track_leadin_ms);
  m_track_starts.Add(GetLength());
}

void PCM_sink_iso::recordMarker(const char* title, double position) {
  addTrackName(title);
  if (m_track_src_pos.GetSize() == 0 && !m_track_src_pos.Add(GetStartTime())) return;
  m_track_src_len.Add(position - m_track_src_pos.Get()[m_track_src_pos.GetSize() - 1]);
  m_track_src_pos.Add(position);
}

void PCM_sink_iso::recordRegion(const char* title, double position, double length) {
  m_track_src_pos.Add(position);
  m_track_src_len.Add(length);
  addTrackName(title);
}

void PCM_sink_iso::writeFrames(const SourceFrames& block, int frames) {
  if (frames <= 0) return;
  const int64_t samples = int64_t{frames} * m_nch;
  const int count = static_cast<int>(std::min<int64_t>(samples, INT_MAX));
  short* const converted = m_convbuf.Resize(count, false);
  if (m_convbuf.GetSize() != count) {  // also when their bytes are more than an int can count
    YDK_FileWrite::ReportFailure(kDiskOtherError);
    return;
  }
  convertFrames(block.left, block.right, block.spacing, frames, converted);
  m_binfile->Write(converted, count * static_cast<int>(sizeof(short)));
  m_frames_written += count / m_nch;
}

void PCM_sink_iso::writeSilence(int bytes) {
  YDK_HeapBuf zeros(4096);
  const int piece = std::min(bytes, kSilencePiece);
  void* const silence = zeros.Resize(piece);
  if (zeros.GetSize() != piece) {
    YDK_FileWrite::ReportFailure(kDiskOtherError);
    return;
  }
  memset(silence, 0, static_cast<size_t>(piece));
  for (int remaining = bytes; remaining > 0; remaining -= piece) {
    m_binfile->Write(silence, std::min(remaining, piece));
  }
  m_frames_written += bytes / kFrameBytes;
}

void PCM_sink_iso::writeLeadIn(int ms) {
  if (ms == 0) return;
  writeSilence(silenceBytes(ms));
  padToSector();
  m_silence_sec += ms / 1000.0;
}

void PCM_sink_iso::padToSector() {
  const int beyond = static_cast<int>(m_binfile->GetPosition() % kSectorBytes);
  if (beyond > 0) writeSilence(kSectorBytes - beyond);
}
