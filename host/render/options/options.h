// What the user asked for on the command line.
#pragma once

#include <map>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "abi/sink_registration.h"
#include "host/render/input/audio_input.h"
#include "host/render/input/marks/mark.h"
#include "host/render/input/marks/mark_parsing.h"
#include "host/render/options/burn_options.h"

namespace velmor::render {

struct AlbumTexts {
  std::string title, performer, songwriter, catalogue, comment;
  std::vector<std::pair<std::string, std::string>> more;  ///< further keys as given
};

/// Inputs as they were given, from 1, the last one included.
struct InputRange {
  int first = 1, last = 1;
};

struct Options {
  std::vector<std::string> inputs;
  std::string output;

  std::optional<TrackMode> track_mode;  ///< nothing: the marks decide
  int track_leadin_ms = 0;
  int disc_leadin_ms = 0;
  bool hash_markers_only = false;
  bool allow_overlong = false;  ///< beyond what an 80-minute disc holds

  AlbumTexts texts;
  std::map<int, std::string> isrcs;  ///< by input number, from 1; form checked, without dashes
  std::vector<Mark> marks;           ///< --marker and --region, timeline seconds
  std::string labels;                ///< label track's path, empty for none
  bool embedded_markers = true;
  std::vector<InputRange> joined;  ///< those that make one track together

  std::optional<double> start, end;  ///< timeline seconds
  /// Those of the times above that may have been meant otherwise.
  std::vector<TwoFacedTime> two_faced_times;
  Dither dither = Dither::kTpdf;
  int block = 1024;  ///< frames

  std::string module;  ///< path; empty: the one that came with the program
  bool json = false;
  bool quiet = false;
  bool force = false;

  BurnOptions burn;
  bool list_drives = false;  ///< and nothing else
  bool portable_cue = false;
  std::string ddp;   ///< folder of the set for a plant; empty: none is wanted
  std::string html;  ///< the page to look at; empty: none is wanted
};

/// Reads command lines, one after the other: a line knows nothing of the ones before.
class CommandLineParser {
 public:
  CommandLineParser();
  ~CommandLineParser();
  CommandLineParser(const CommandLineParser&) = delete;
  CommandLineParser& operator=(const CommandLineParser&) = delete;

  /// The options of a command line; nothing when it asked for help or the version, which are then
  /// printed. Throws `UsageError` for one that makes no sense.
  std::optional<Options> parse(int argc, char** argv);

 private:
  struct Parts;
  std::unique_ptr<Parts> m_parts;
};

/// The same for the one command line that a program has.
std::optional<Options> parseCommandLine(int argc, char** argv);

/// Whether results are wanted as JSON. Holds also for a command line that is wrong otherwise: its
/// failure is to be printed as JSON too.
bool asksForJson(int argc, char** argv);

}  // namespace velmor::render
