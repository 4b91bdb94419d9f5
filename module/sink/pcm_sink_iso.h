// The render target: raw CD image and cue sheet.
#pragma once

#include <cstdint>
#include <memory>

#include "abi/pcm_sink.h"
#include "module/support/assoc_array.h"
#include "module/support/file_write.h"
#include "module/support/ptr_list.h"
#include "module/support/typed_buf.h"
#include "module/support/ydk_string.h"

/// Made by the host's render, fed its mix, told of its end, deleted by the host. Nothing throws; a
/// sink that could not open its files is not usable and is thrown away by its maker.
class PCM_sink_iso final : public PCM_sink {
 public:
  /// `filename`: the sheet, as the host names it. `cfg`: a `SinkConfig` of `cfg_len` bytes; one
  /// that is too short is all defaults. Channels, rate and peaks are the sink's own choice,
  /// whatever is asked.
  PCM_sink_iso(const char* filename, void* cfg, int cfg_len, int nch, int srate, bool buildpeaks);
  /// Releases; never completes an image. A render given up leaves what was written and an empty
  /// sheet.
  ~PCM_sink_iso() override;

  /// Whether both files are open.
  bool isUsable() const { return m_cuefile && m_binfile; }

  void GetOutputInfoString(char* buf, int buflen) override;
  const char* GetFileName() override;
  int GetNumChannels() override;
  double GetLength() override;
  long long GetFileSize() override;
  void WriteMIDI(MIDI_eventlist* events, int len, double samplerate) override;
  void WriteDoubles(double** samples, int len, int nch, int offset, int spacing) override;
  int GetLastSecondPeaks(int size, double* buf) override;
  int Extended(int call, void* p1, void* p2, void* p3) override;

 private:
  struct SourceFrames;

  bool nameFiles(const char* filename);
  bool openFiles(const char* filename);
  void closeFiles();
  void readMetadata();
  void readConfig(const void* cfg, int cfg_len);
  void nameFirstTrack();
  void addTrackName(const char* title);

  /// Does with the block what `cutter` says.
  template <class Cutter>
  void writeCut(SourceFrames block, Cutter cutter);
  /// Seconds in the image since the last track start.
  double trackLength();
  /// A track's lead-in, and its start after that.
  void startTrack();
  /// The title and the project position of the track that a marker has begun.
  void recordMarker(const char* title, double position);
  /// The title and the span in the project of a region whose audio follows.
  void recordRegion(const char* title, double position, double length);

  void writeFrames(const SourceFrames& block, int frames);
  /// Writes `bytes` zero bytes to the image.
  void writeSilence(int bytes);
  /// A lead-in of `ms` milliseconds and the padding to a whole sector; nothing for 0.
  void writeLeadIn(int ms);
  void padToSector();

  void finishRender(void* parent);
  void writeCueSheet();

  std::unique_ptr<YDK_FileWrite> m_cuefile;  ///< null when it could not be opened, or is finished
  std::unique_ptr<YDK_FileWrite> m_binfile;  ///< likewise
  YDK_TypedBuf<short> m_convbuf{4096};
  int m_nch = 2;
  int m_srate = 44100;
  int64_t m_filesize = 0;        ///< what `GetFileSize` reports
  int64_t m_frames_written = 0;  ///< frames in the image, silences included
  YDK_String m_cuefn{128};
  YDK_String m_binfn{128};
  YDK_TypedBuf<double> m_track_starts{4096};    ///< image seconds
  YDK_OwningPtrList<YDK_String> m_track_names;  ///< titles
  int m_disc_leadin_ms = 0;
  int m_track_leadin_ms = 0;
  int m_marker_idx = 0;  ///< the marker or region to look at next
  int m_hash_only = 0;
  double m_silence_sec = 0.0;  ///< seconds of lead-ins so far; part of the fixed layout,
                               ///< read by nobody
  double m_region_end =
      -1.0;             ///< seconds from the render's start, negative before the first region
  int m_in_frames = 0;  ///< input frames so far; stays at its maximum
  int m_burn_after = 0;
  int m_track_mode = 0;                        ///< a `TrackMode`
  YDK_TypedBuf<double> m_track_src_pos{4096};  ///< project seconds
  YDK_TypedBuf<double> m_track_src_len{4096};  ///< seconds
  YDK_StringKeyedArray<char*> m_metadata{false, freecharptr};
};
