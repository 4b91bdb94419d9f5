#include "tests/module/model/reference_model.h"

#include <strings.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <limits>
#include <set>

namespace model {
namespace {

constexpr double kRate = 44100.0;
constexpr int64_t kSectorBytes = 2352;
constexpr int64_t kFrameBytes = 4;
constexpr int64_t kBytesPerSecond = 176400;
constexpr size_t kLongestLine = 4095;
constexpr size_t kLongestImageName = 1000;
constexpr double kTagAllowance = 0.001;

/// Seconds to the nearest frame, halves away from the past; limited to what 64 bits hold.
int64_t framesOf(double seconds) {
  const double frames = seconds * kRate + 0.5;
  if (frames >= 9223372036854775807.0) return std::numeric_limits<int64_t>::max();
  if (frames <= -9223372036854775808.0) return std::numeric_limits<int64_t>::min();
  return static_cast<int64_t>(frames);
}

bool startsWithIgnoringCase(const std::string& text, const char* prefix, size_t length) {
  return strncasecmp(text.c_str(), prefix, length) == 0;
}

/// The sheet's key for a tag marker's name, or null for other names.
const char* tagKeyOf(const std::string& name) {
  static constexpr std::pair<const char*, const char*> kTags[] = {
      {"PERF=", "PERFORMER"}, {"WRIT=", "SONGWRITER"}, {"ISRC=", "ISRC"}};
  for (const auto& [prefix, key] : kTags) {
    if (startsWithIgnoringCase(name, prefix, 5)) return key;
  }
  return nullptr;
}

std::string quotedLine(const std::string& indent, const std::string& key,
                       const std::string& value) {
  return (indent + key + " \"" + value + "\"\r\n").substr(0, kLongestLine);
}

std::string minutesSecondsFrames(double seconds) {
  const int whole = static_cast<int>(seconds);
  const int milliseconds = static_cast<int>(seconds * 1000.0) % 1000;
  char text[48];
  std::snprintf(text, sizeof text, "%02d:%02d:%02d", whole / 60, whole % 60,
                milliseconds * 75 / 1000);
  return text;
}

std::string baseName(const std::string& path) {
  const size_t separator = path.find_last_of("/\\");
  return separator == std::string::npos ? path : path.substr(separator + 1);
}

/// The values offered for a disc key. More than one when the host gives keys in several cases.
std::vector<std::string> valuesFor(const Project& project, const char* disc_key) {
  static const std::string kPrefix = "CUE:DISC_";
  std::vector<std::string> values;
  for (const auto& [key, value] : project.metadata) {
    if (value.empty() || key.rfind(kPrefix, 0) != 0) continue;
    if (strcasecmp(key.c_str() + kPrefix.size(), disc_key) == 0) values.push_back(value);
  }
  return values;
}

}  // namespace

std::optional<OutputPaths> outputPathsFor(const std::string& file_name) {
  const size_t length = file_name.size();
  const bool has_ending = length >= 4 && strcasecmp(file_name.c_str() + length - 4, ".cue") == 0;
  if (length != 4 && !has_ending) return OutputPaths{file_name + ".cue", file_name + ".bin"};
  const size_t dot = file_name.rfind('.');
  if (dot == std::string::npos) return std::nullopt;
  return OutputPaths{file_name, file_name.substr(0, dot) + ".bin"};
}

int16_t convertSample(double sample) {
  if (std::isnan(sample)) return 0;
  const double scaled = sample * 32768.0;
  if (scaled <= -32768.0) return -32768;
  if (scaled >= 32767.0) return 32767;
  return static_cast<int16_t>(std::floor(scaled + 0.5));
}

std::string differenceFromSheet(const CueSheet& expected, std::string_view actual) {
  for (const auto& alternatives : expected.disc_lines) {
    const auto match = std::find_if(
        alternatives.begin(), alternatives.end(),
        [&](const std::string& line) { return actual.substr(0, line.size()) == line; });
    if (match == alternatives.end()) {
      return "expected the line " + alternatives.front() + "at: " + std::string(actual);
    }
    actual.remove_prefix(match->size());
  }
  if (actual == expected.body) return {};
  return "expected:\n" + expected.body + "\ngot:\n" + std::string(actual);
}

ReferenceDisc::ReferenceDisc(const Project& project, const SinkConfig& config,
                             std::string image_path)
    : m_project(project), m_config(config), m_image_path(std::move(image_path)) {
  m_config.disc_leadin_ms = std::max(m_config.disc_leadin_ms, 0);
  m_config.track_leadin_ms = std::max(m_config.track_leadin_ms, 0);
  m_tracks.push_back(m_config.disc_leadin_ms / 1000.0);
  if (m_config.track_mode == kTracksFromMarkers) nameFirstTrack();
  writeDiscLeadIn();
}

bool ReferenceDisc::isTrackMarker(const ProjectEntry& entry) const {
  if (entry.is_region) return false;
  if (m_config.hash_markers_only != 0) return entry.name && entry.name->rfind('#', 0) == 0;
  return !entry.name || tagKeyOf(*entry.name) == nullptr;
}

void ReferenceDisc::nameFirstTrack() {
  for (const ProjectEntry& entry : m_project.entries) {
    const double position = entry.position - m_start_time;
    if (!isTrackMarker(entry) || !(position >= 0.0)) continue;
    if (position > 4.0) break;
    const std::string name = entry.name.value_or("");
    m_names.push_back(m_config.hash_markers_only != 0 ? name.substr(1) : name);
    return;
  }
  m_names.emplace_back();
}

void ReferenceDisc::writeDiscLeadIn() {
  if (m_config.disc_leadin_ms == 0) return;
  writeSilence(m_config.disc_leadin_ms);
  padToSector();
}

void ReferenceDisc::writeSilence(int64_t milliseconds) {
  writeZeros(milliseconds * kBytesPerSecond / 1000);
}

void ReferenceDisc::writeZeros(int64_t bytes) {
  m_image.resize(m_image.size() + static_cast<size_t>(bytes), 0);
  m_frames_written += bytes / kFrameBytes;
}

void ReferenceDisc::padToSector() {
  const int64_t inside = static_cast<int64_t>(m_image.size()) % kSectorBytes;
  if (inside != 0) writeZeros(kSectorBytes - inside);
}

void ReferenceDisc::trackLeadIn() {
  if (m_config.track_leadin_ms != 0) {
    writeSilence(m_config.track_leadin_ms);
    padToSector();
  }
  m_tracks.push_back(length());
}

void ReferenceDisc::take(Rest& rest, int64_t frames) {
  const size_t at = m_image.size();
  m_image.resize(at + static_cast<size_t>(frames * kFrameBytes));
  uint8_t* bytes = m_image.data() + at;
  const auto put = [&bytes](double sample) {
    const auto word = static_cast<uint16_t>(convertSample(sample));
    *bytes++ = static_cast<uint8_t>(word & 0xFF);
    *bytes++ = static_cast<uint8_t>(word >> 8);
  };
  for (int64_t i = 0; i < frames; ++i) {
    put(rest.left[i * rest.spacing]);
    put(rest.right[i * rest.spacing]);
  }
  m_frames_written += frames;
  discard(rest, frames);
}

void ReferenceDisc::discard(Rest& rest, int64_t frames) {
  rest.left += frames * rest.spacing;
  rest.right += frames * rest.spacing;
  rest.frames -= frames;
  rest.time += static_cast<double>(frames) / kRate;
}

void ReferenceDisc::writeBlock(const double* const* samples, int frames, int channels, int offset,
                               int spacing) {
  if (frames <= 0) return;
  Rest rest{samples[0] + offset, samples[channels > 1 ? 1 : 0] + offset, frames, spacing,
            static_cast<double>(m_frames_received) / kRate};
  m_frames_received += frames;
  if (m_config.track_mode == kTracksFromMarkers) {
    cutAtMarkers(rest);
  } else if (m_config.track_mode == kTracksFromRegions) {
    keepRegions(rest);
  } else {
    take(rest, rest.frames);
  }
}

void ReferenceDisc::cutAtMarkers(Rest rest) {
  for (; m_next_entry < m_project.entries.size(); ++m_next_entry) {
    const ProjectEntry& entry = m_project.entries[m_next_entry];
    const double position = entry.position - m_start_time;
    if (!isTrackMarker(entry) || !(position > 0.0)) continue;
    const int64_t ahead = framesOf(position - rest.time);
    if (ahead >= rest.frames) break;
    if (ahead < 0) continue;
    take(rest, ahead);
    if (!farEnoughForATrack()) continue;
    trackLeadIn();
    const std::string name = entry.name.value_or("");
    m_names.push_back(m_config.hash_markers_only != 0 ? name.substr(1) : name);
    if (m_source_positions.empty()) m_source_positions.push_back(m_start_time);
    m_source_lengths.push_back(entry.position - m_source_positions.back());
    m_source_positions.push_back(entry.position);
  }
  take(rest, rest.frames);
}

/// Moves to the next region that is not over. False when the rest of the block lies outside.
bool ReferenceDisc::enterNextRegion(Rest& rest) {
  for (; m_next_entry < m_project.entries.size(); ++m_next_entry) {
    const ProjectEntry& entry = m_project.entries[m_next_entry];
    const double start = entry.position - m_start_time;
    const double end = entry.end - m_start_time;
    if (!entry.is_region || std::isnan(start) || std::isnan(end)) continue;
    if (framesOf(end - rest.time) < 0) continue;
    const int64_t ahead = framesOf(start - rest.time);
    if (ahead >= rest.frames) return false;
    if (ahead > 0) discard(rest, ahead);
    if (m_region_end >= 0.0 && farEnoughForATrack()) trackLeadIn();
    m_source_positions.push_back(start + m_start_time);
    m_source_lengths.push_back(end - start);
    m_names.push_back(entry.name.value_or(""));
    m_region_end = end;
    ++m_next_entry;
    return true;
  }
  return false;
}

void ReferenceDisc::keepRegions(Rest rest) {
  enum class Last { kNothing, kWrote, kEntered } last = Last::kNothing;
  while (rest.frames > 0) {
    const int64_t inside = framesOf(m_region_end - rest.time);
    const Last next = inside >= 1 ? Last::kWrote : Last::kEntered;
    if (last == next) {  // a region of no frames, or one that rounding has left open by a frame
      take(rest, rest.frames);
      return;
    }
    last = next;
    if (next == Last::kWrote) {
      take(rest, std::min(rest.frames, inside));
    } else if (!enterNextRegion(rest)) {
      return;
    }
  }
}

void ReferenceDisc::finish() {
  padToSector();
  writeSheet();
}

void ReferenceDisc::writeSheet() {
  for (const char* key : {"REM", "TITLE", "PERFORMER", "SONGWRITER", "CATALOG"}) {
    std::vector<std::string> lines;
    for (const std::string& value : valuesFor(m_project, key)) {
      lines.push_back(quotedLine("", key, value));
    }
    if (!lines.empty()) m_sheet.disc_lines.push_back(lines);
  }
  m_sheet.body = "FILE \"" + baseName(m_image_path).substr(0, kLongestImageName) + "\" BINARY\r\n";
  for (size_t track = 0; track < m_tracks.size(); ++track) {
    char line[48];
    std::snprintf(line, sizeof line, "  TRACK %02zu AUDIO\r\n", track + 1);
    m_sheet.body += line;
    if (track < m_names.size() && !m_names[track].empty()) {
      std::string title = m_names[track];
      std::replace(title.begin(), title.end(), '"', '\'');
      m_sheet.body += quotedLine("    ", "TITLE", title);
    }
    writeTrackTags(track);
    if (track == 0 && m_config.disc_leadin_ms != 0) m_sheet.body += "    INDEX 00 00:00:00\r\n";
    if (track != 0 && m_config.track_leadin_ms != 0) {
      const int whole_seconds = m_config.track_leadin_ms / 1000;
      m_sheet.body +=
          "    INDEX 00 " + minutesSecondsFrames(m_tracks[track] - whole_seconds) + "\r\n";
    }
    m_sheet.body += "    INDEX 01 " + minutesSecondsFrames(m_tracks[track]) + "\r\n";
  }
}

ReferenceDisc::Span ReferenceDisc::spanOfTrack(size_t track) const {
  Span span{m_start_time, length() - m_tracks[track]};
  if (track < m_source_positions.size()) span.start = m_source_positions[track];
  if (track < m_source_lengths.size()) span.length = m_source_lengths[track];
  return span;
}

void ReferenceDisc::writeTrackTags(size_t track) {
  const Span span = spanOfTrack(track);
  const double from = span.start - kTagAllowance;
  const double to = from + span.length;
  std::set<std::string> written;
  for (const ProjectEntry& entry : m_project.entries) {
    if (std::isnan(entry.position) || entry.position < from) continue;
    if (entry.position >= to) break;
    if (!entry.name || entry.name->empty()) continue;
    const char* key = tagKeyOf(*entry.name);
    if (key == nullptr || !written.insert(key).second) continue;
    m_sheet.body += quotedLine("    ", key, entry.name->substr(5));
  }
}

}  // namespace model
