// The image: samples, silences, and the tracks that a block begins.
#include <algorithm>
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

/// One block of the render on its way into the image.
class PCM_sink_iso::BlockWriter final : public TrackCutTarget {
 public:
  BlockWriter(PCM_sink_iso& sink, const double* left, const double* right, int spacing)
      : m_sink(sink), m_left(left), m_right(right), m_spacing(spacing) {}

  void WriteFrames(int64_t frames) override {
    m_sink.WriteFrames(m_left, m_right, m_spacing, static_cast<int>(frames));
    DropFrames(frames);
  }

  void DropFrames(int64_t frames) override {
    m_left += frames * m_spacing;
    m_right += frames * m_spacing;
  }

  double TrackLength() override {
    const YDK_TypedBuf<double>& starts = m_sink.m_track_starts;
    return m_sink.GetLength() - starts.Get()[starts.GetSize() - 1];
  }

  void StartTrack() override {
    m_sink.WriteLeadIn(m_sink.m_track_leadin_ms);
    m_sink.m_track_starts.Add(m_sink.GetLength());
  }

  void RecordMarker(const char* title, double position) override {
    YDK_TypedBuf<double>& positions = m_sink.m_track_src_pos;
    m_sink.AddTrackName(title);
    if (positions.GetSize() == 0 && !positions.Add(m_sink.GetStartTime())) return;
    m_sink.m_track_src_len.Add(position - positions.Get()[positions.GetSize() - 1]);
    positions.Add(position);
  }

  void RecordRegion(const char* title, double position, double length) override {
    m_sink.m_track_src_pos.Add(position);
    m_sink.m_track_src_len.Add(length);
    m_sink.AddTrackName(title);
  }

 private:
  PCM_sink_iso& m_sink;
  const double* m_left;
  const double* m_right;
  const int m_spacing;
};

void PCM_sink_iso::WriteDoubles(double** samples, int len, int nch, int offset, int spacing) {
  if (len <= 0 || !IsUsable()) return;  // a finished sink takes nothing more
  BlockWriter block(*this, samples[0] + offset, samples[nch > 1 ? 1 : 0] + offset, spacing);
  const BlockRest rest{len, static_cast<double>(m_in_frames) / static_cast<double>(m_srate)};
  m_in_frames = static_cast<int>(std::min<int64_t>(int64_t{m_in_frames} + len, INT_MAX));
  if (m_track_mode == kTracksFromMarkers) {
    cutAtMarkers(block, rest, GetStartTime(), m_hash_only != 0, m_marker_idx);
  } else if (m_track_mode == kTracksFromRegions) {
    cutToRegions(block, rest, GetStartTime(), m_marker_idx, m_region_end);
  } else {
    block.WriteFrames(len);
  }
}

void PCM_sink_iso::WriteFrames(const double* left, const double* right, int spacing, int frames) {
  if (frames <= 0) return;
  const int64_t samples = int64_t{frames} * m_nch;
  const int count = static_cast<int>(std::min<int64_t>(samples, INT_MAX));
  short* const converted = m_convbuf.Resize(count, false);
  if (m_convbuf.GetSize() != count || samples > INT_MAX / static_cast<int>(sizeof(short))) {
    YDK_FileWrite::ReportFailure(kDiskOtherError);
    return;
  }
  convertFrames(left, right, spacing, frames, converted);
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

void PCM_sink_iso::WriteLeadIn(int ms) {
  if (ms == 0) return;
  writeSilence(silenceBytes(ms));
  padToSector();
  m_silence_sec += ms / 1000.0;
}

void PCM_sink_iso::padToSector() {
  const int beyond = static_cast<int>(m_binfile->GetPosition() % kSectorBytes);
  if (beyond > 0) writeSilence(kSectorBytes - beyond);
}
