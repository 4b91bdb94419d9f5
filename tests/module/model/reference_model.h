// What a render must leave on disk, worked out a second time.
//
// The model keeps the whole image in memory, writes nothing and shares no code with the module; it
// knows the module's configuration record only. Times are seconds, a frame is one stereo pair of
// 4 bytes, a sector 588 frames. It repeats the module's rules on purpose: their homes are
// module/sink/track_cutter.cpp, module/sink/pcm_sink_iso_write.cpp and module/sink/cue_sheet.cpp.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "abi/sink_registration.h"

namespace model {

/// A marker (`end` unused) or a region of the project, in project seconds.
struct ProjectEntry {
  bool is_region = false;
  double position = 0.0;
  double end = 0.0;
  std::optional<std::string> name;  ///< none: the host gives a null name
};

/// The project as a host enumerates it: entries and metadata in the host's order.
struct Project {
  std::vector<ProjectEntry> entries;
  std::vector<std::pair<std::string, std::string>> metadata;
};

/// The paths a render writes. The sheet goes to the name as given by the host.
struct OutputPaths {
  std::string reported_sheet;  ///< what the sink reports as its file name
  std::string image;
};

/// The paths for the host's file name, or nothing when no image name can be made of it.
std::optional<OutputPaths> outputPathsFor(const std::string& file_name);

/// One 16-bit sample of a sample whose full scale is 1.0; NaN is silence.
int16_t convertSample(double sample);

/// A sheet in two parts, because where two metadata keys differ only in case either may win.
struct CueSheet {
  std::vector<std::vector<std::string>> disc_lines;  ///< per line, the texts that are right
  std::string body;                                  ///< from the FILE line to the end
};

/// Empty when `actual` is the sheet, otherwise a description of the first difference.
std::string differenceFromSheet(const CueSheet& expected, std::string_view actual);

/// One render, driven like a sink.
class ReferenceDisc {
 public:
  /// `config` is the configuration as the sink reads it: a short or foreign blob is all zeros.
  ReferenceDisc(const Project& project, const SinkConfig& config, std::string image_path);

  void setStartTime(double seconds) { m_start_time = seconds; }
  /// Frame i of channel c is `samples[c][offset + i * spacing]`.
  void writeBlock(const double* const* samples, int frames, int channels, int offset, int spacing);
  /// Pads the image to a whole sector and writes the sheet.
  void finish();

  const std::vector<uint8_t>& image() const { return m_image; }
  const CueSheet& sheet() const { return m_sheet; }
  /// Frames as the sink counts them (a silence of broken frames counts its whole frames).
  double length() const { return static_cast<double>(m_frames_written) / 44100.0; }
  size_t trackCount() const { return m_tracks.size(); }
  size_t titleCount() const { return m_names.size(); }

 private:
  /// The part of a block that is still to be handled.
  struct Rest {
    const double* left;
    const double* right;
    int64_t frames;
    int64_t spacing;
    double time;  ///< input seconds consumed before it
  };
  struct Span {
    double start;
    double length;
  };

  void nameFirstTrack();
  void writeDiscLeadIn();
  void writeSilence(int64_t milliseconds);
  void writeZeros(int64_t bytes);
  void padToSector();
  void trackLeadIn();
  void take(Rest& rest, int64_t frames);
  void discard(Rest& rest, int64_t frames);
  void cutAtMarkers(Rest rest);
  void keepRegions(Rest rest);
  bool enterNextRegion(Rest& rest);
  bool isTrackMarker(const ProjectEntry& entry) const;
  bool farEnoughForATrack() const { return length() - m_tracks.back() >= 4.0; }
  Span spanOfTrack(size_t track) const;
  void writeSheet();
  void writeTrackTags(size_t track);

  const Project& m_project;
  SinkConfig m_config;
  std::string m_image_path;
  double m_start_time = 0.0;
  std::vector<uint8_t> m_image;
  CueSheet m_sheet;
  int64_t m_frames_written = 0;
  int64_t m_frames_received = 0;
  size_t m_next_entry = 0;
  double m_region_end = -1.0;  ///< relative to the start time
  std::vector<double> m_tracks;
  std::vector<std::string> m_names;
  std::vector<double> m_source_positions;
  std::vector<double> m_source_lengths;
};

}  // namespace model
