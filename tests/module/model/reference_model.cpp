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
int64_t FramesOf(double seconds) {
  const double frames = seconds * kRate + 0.5;
  if (frames >= 9223372036854775807.0) return std::numeric_limits<int64_t>::max();
  if (frames <= -9223372036854775808.0) return std::numeric_limits<int64_t>::min();
  return static_cast<int64_t>(frames);
}

bool StartsWithIgnoringCase(const std::string& text, const char* prefix, size_t length) {
  return strncasecmp(text.c_str(), prefix, length) == 0;
}

/// The sheet's key for a tag marker's name, or null for other names.
const char* TagKeyOf(const std::string& name) {
  static constexpr std::pair<const char*, const char*> kTags[] = {
      {"PERF=", "PERFORMER"}, {"WRIT=", "SONGWRITER"}, {"ISRC=", "ISRC"}};
  for (const auto& [prefix, key] : kTags) {
    if (StartsWithIgnoringCase(name, prefix, 5)) return key;
  }
  return nullptr;
}

std::string QuotedLine(const std::string& indent, const std::string& key,
                       const std::string& value) {
  return (indent + key + " \"" + value + "\"\r\n").substr(0, kLongestLine);
}

std::string MinutesSecondsFrames(double seconds) {
  const int whole = static_cast<int>(seconds);
  const int milliseconds = static_cast<int>(seconds * 1000.0) % 1000;
  char text[48];
  std::snprintf(text, sizeof text, "%02d:%02d:%02d", whole / 60, whole % 60,
                milliseconds * 75 / 1000);
  return text;
}

std::string BaseName(const std::string& path) {
  const size_t separator = path.find_last_of("/\\");
  return separator == std::string::npos ? path : path.substr(separator + 1);
}

/// The values offered for a disc key. More than one when the host gives keys in several cases.
std::vector<std::string> ValuesFor(const Project& project, const char* disc_key) {
  static const std::string kPrefix = "CUE:DISC_";
  std::vector<std::string> values;
  for (const auto& [key, value] : project.metadata) {
    if (value.empty() || key.rfind(kPrefix, 0) != 0) continue;
    if (strcasecmp(key.c_str() + kPrefix.size(), disc_key) == 0) values.push_back(value);
  }
  return values;
}

}  // namespace

std::optional<OutputPaths> OutputPathsFor(const std::string& file_name) {
  const size_t length = file_name.size();
  const bool has_ending = length >= 4 && strcasecmp(file_name.c_str() + length - 4, ".cue") == 0;
  if (length != 4 && !has_ending) return OutputPaths{file_name + ".cue", file_name + ".bin"};
  const size_t dot = file_name.rfind('.');
  if (dot == std::string::npos) return std::nullopt;
  return OutputPaths{file_name, file_name.substr(0, dot) + ".bin"};
}

int16_t ConvertSample(double sample) {
  if (std::isnan(sample)) return 0;
  const double scaled = sample * 32768.0;
  if (scaled <= -32768.0) return -32768;
  if (scaled >= 32767.0) return 32767;
  return static_cast<int16_t>(std::floor(scaled + 0.5));
}

std::string DifferenceFromSheet(const CueSheet& expected, std::string_view actual) {
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
    : project_(project), config_(config), image_path_(std::move(image_path)) {
  config_.disc_leadin_ms = std::max(config_.disc_leadin_ms, 0);
  config_.track_leadin_ms = std::max(config_.track_leadin_ms, 0);
  tracks_.push_back(config_.disc_leadin_ms / 1000.0);
  if (config_.track_mode == kTracksFromMarkers) NameFirstTrack();
  WriteDiscLeadIn();
}

bool ReferenceDisc::IsTrackMarker(const ProjectEntry& entry) const {
  if (entry.is_region) return false;
  if (config_.hash_markers_only != 0) return entry.name && entry.name->rfind('#', 0) == 0;
  return !entry.name || TagKeyOf(*entry.name) == nullptr;
}

void ReferenceDisc::NameFirstTrack() {
  for (const ProjectEntry& entry : project_.entries) {
    const double position = entry.position - start_time_;
    if (!IsTrackMarker(entry) || !(position >= 0.0)) continue;
    if (position > 4.0) break;
    const std::string name = entry.name.value_or("");
    names_.push_back(config_.hash_markers_only != 0 ? name.substr(1) : name);
    return;
  }
  names_.emplace_back();
}

void ReferenceDisc::WriteDiscLeadIn() {
  if (config_.disc_leadin_ms == 0) return;
  WriteSilence(config_.disc_leadin_ms);
  PadToSector();
}

void ReferenceDisc::WriteSilence(int64_t milliseconds) {
  WriteZeros(milliseconds * kBytesPerSecond / 1000);
}

void ReferenceDisc::WriteZeros(int64_t bytes) {
  image_.resize(image_.size() + static_cast<size_t>(bytes), 0);
  frames_written_ += bytes / kFrameBytes;
}

void ReferenceDisc::PadToSector() {
  const int64_t inside = static_cast<int64_t>(image_.size()) % kSectorBytes;
  if (inside != 0) WriteZeros(kSectorBytes - inside);
}

void ReferenceDisc::TrackLeadIn() {
  if (config_.track_leadin_ms != 0) {
    WriteSilence(config_.track_leadin_ms);
    PadToSector();
  }
  tracks_.push_back(length());
}

void ReferenceDisc::Take(Rest& rest, int64_t frames) {
  const size_t at = image_.size();
  image_.resize(at + static_cast<size_t>(frames * kFrameBytes));
  uint8_t* bytes = image_.data() + at;
  const auto put = [&bytes](double sample) {
    const auto word = static_cast<uint16_t>(ConvertSample(sample));
    *bytes++ = static_cast<uint8_t>(word & 0xFF);
    *bytes++ = static_cast<uint8_t>(word >> 8);
  };
  for (int64_t i = 0; i < frames; ++i) {
    put(rest.left[i * rest.spacing]);
    put(rest.right[i * rest.spacing]);
  }
  frames_written_ += frames;
  Discard(rest, frames);
}

void ReferenceDisc::Discard(Rest& rest, int64_t frames) {
  rest.left += frames * rest.spacing;
  rest.right += frames * rest.spacing;
  rest.frames -= frames;
  rest.time += static_cast<double>(frames) / kRate;
}

void ReferenceDisc::WriteBlock(const double* const* samples, int frames, int channels, int offset,
                               int spacing) {
  if (frames <= 0) return;
  Rest rest{samples[0] + offset, samples[channels > 1 ? 1 : 0] + offset, frames, spacing,
            static_cast<double>(frames_received_) / kRate};
  frames_received_ += frames;
  if (config_.track_mode == kTracksFromMarkers) {
    CutAtMarkers(rest);
  } else if (config_.track_mode == kTracksFromRegions) {
    KeepRegions(rest);
  } else {
    Take(rest, rest.frames);
  }
}

void ReferenceDisc::CutAtMarkers(Rest rest) {
  for (; next_entry_ < project_.entries.size(); ++next_entry_) {
    const ProjectEntry& entry = project_.entries[next_entry_];
    const double position = entry.position - start_time_;
    if (!IsTrackMarker(entry) || !(position > 0.0)) continue;
    const int64_t ahead = FramesOf(position - rest.time);
    if (ahead >= rest.frames) break;
    if (ahead < 0) continue;
    Take(rest, ahead);
    if (!FarEnoughForATrack()) continue;
    TrackLeadIn();
    const std::string name = entry.name.value_or("");
    names_.push_back(config_.hash_markers_only != 0 ? name.substr(1) : name);
    if (source_positions_.empty()) source_positions_.push_back(start_time_);
    source_lengths_.push_back(entry.position - source_positions_.back());
    source_positions_.push_back(entry.position);
  }
  Take(rest, rest.frames);
}

/// Moves to the next region that is not over. False when the rest of the block lies outside.
bool ReferenceDisc::EnterNextRegion(Rest& rest) {
  for (; next_entry_ < project_.entries.size(); ++next_entry_) {
    const ProjectEntry& entry = project_.entries[next_entry_];
    const double start = entry.position - start_time_;
    const double end = entry.end - start_time_;
    if (!entry.is_region || std::isnan(start) || std::isnan(end)) continue;
    if (FramesOf(end - rest.time) < 0) continue;
    const int64_t ahead = FramesOf(start - rest.time);
    if (ahead >= rest.frames) return false;
    if (ahead > 0) Discard(rest, ahead);
    if (region_end_ >= 0.0 && FarEnoughForATrack()) TrackLeadIn();
    source_positions_.push_back(start + start_time_);
    source_lengths_.push_back(end - start);
    names_.push_back(entry.name.value_or(""));
    region_end_ = end;
    ++next_entry_;
    return true;
  }
  return false;
}

void ReferenceDisc::KeepRegions(Rest rest) {
  enum class Last { kNothing, kWrote, kEntered } last = Last::kNothing;
  while (rest.frames > 0) {
    const int64_t inside = FramesOf(region_end_ - rest.time);
    const Last next = inside >= 1 ? Last::kWrote : Last::kEntered;
    if (last == next) {  // a region of no frames, or one that rounding has left open by a frame
      Take(rest, rest.frames);
      return;
    }
    last = next;
    if (next == Last::kWrote) {
      Take(rest, std::min(rest.frames, inside));
    } else if (!EnterNextRegion(rest)) {
      return;
    }
  }
}

void ReferenceDisc::Finish() {
  PadToSector();
  WriteSheet();
}

void ReferenceDisc::WriteSheet() {
  for (const char* key : {"REM", "TITLE", "PERFORMER", "SONGWRITER", "CATALOG"}) {
    std::vector<std::string> lines;
    for (const std::string& value : ValuesFor(project_, key)) {
      lines.push_back(QuotedLine("", key, value));
    }
    if (!lines.empty()) sheet_.disc_lines.push_back(lines);
  }
  sheet_.body = "FILE \"" + BaseName(image_path_).substr(0, kLongestImageName) + "\" BINARY\r\n";
  for (size_t track = 0; track < tracks_.size(); ++track) {
    char line[48];
    std::snprintf(line, sizeof line, "  TRACK %02zu AUDIO\r\n", track + 1);
    sheet_.body += line;
    if (track < names_.size() && !names_[track].empty()) {
      std::string title = names_[track];
      std::replace(title.begin(), title.end(), '"', '\'');
      sheet_.body += QuotedLine("    ", "TITLE", title);
    }
    WriteTrackTags(track);
    if (track == 0 && config_.disc_leadin_ms != 0) sheet_.body += "    INDEX 00 00:00:00\r\n";
    if (track != 0 && config_.track_leadin_ms != 0) {
      const int whole_seconds = config_.track_leadin_ms / 1000;
      sheet_.body +=
          "    INDEX 00 " + MinutesSecondsFrames(tracks_[track] - whole_seconds) + "\r\n";
    }
    sheet_.body += "    INDEX 01 " + MinutesSecondsFrames(tracks_[track]) + "\r\n";
  }
}

ReferenceDisc::Span ReferenceDisc::SpanOfTrack(size_t track) const {
  Span span{start_time_, length() - tracks_[track]};
  if (track < source_positions_.size()) span.start = source_positions_[track];
  if (track < source_lengths_.size()) span.length = source_lengths_[track];
  return span;
}

void ReferenceDisc::WriteTrackTags(size_t track) {
  const Span span = SpanOfTrack(track);
  const double from = span.start - kTagAllowance;
  const double to = from + span.length;
  std::set<std::string> written;
  for (const ProjectEntry& entry : project_.entries) {
    if (std::isnan(entry.position) || entry.position < from) continue;
    if (entry.position >= to) break;
    if (!entry.name || entry.name->empty()) continue;
    const char* key = TagKeyOf(*entry.name);
    if (key == nullptr || !written.insert(key).second) continue;
    sheet_.body += QuotedLine("    ", key, entry.name->substr(5));
  }
}

}  // namespace model
