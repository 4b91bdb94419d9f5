// What the person asked for.
#pragma once

#include <map>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "abi/sink_registration.h"
#include "host/render/input/audio_input.h"
#include "host/render/options/burn_options.h"

namespace velmor::render {

inline constexpr const char* kProgram = "velmor-render";

struct DiscTexts {
  std::string title, performer, songwriter, catalogue, comment;
  std::vector<std::pair<std::string, std::string>> more;  ///< further keys as given
};

struct Options {
  std::vector<std::string> inputs;
  std::string output;

  TrackMode track_mode = kTracksFromMarkers;
  int track_leadin_ms = 0;
  int disc_leadin_ms = 0;
  bool hash_markers_only = false;

  DiscTexts texts;
  std::map<int, std::string> isrcs;  ///< by input number, from 1; form checked, without dashes
  std::vector<Mark> marks;           ///< --marker and --region, timeline seconds
  std::string labels;                ///< label track's path, empty for none
  bool embedded_markers = true;

  std::optional<double> start, end;  ///< timeline seconds
  Dither dither = Dither::kNone;
  int block = 1024;  ///< frames

  std::string module;  ///< path; empty: the one that came with the program
  bool json = false;
  bool quiet = false;
  bool force = false;

  BurnOptions burn;
  bool list_drives = false;  ///< and nothing else
  bool portable_cue = false;
};

/// The command line's options, unless there is nothing to do but leave: help or the version was
/// printed, or the usage is wrong.
struct CommandLine {
  Options options;  ///< `json` is right in any case
  bool answered = false;
  std::optional<std::string> wrong_usage;  ///< one sentence
};
CommandLine parseCommandLine(int argc, char** argv);

}  // namespace velmor::render
