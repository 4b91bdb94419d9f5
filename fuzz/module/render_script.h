// A whole render as a script, one instruction a line; what is no instruction is passed over.
//
//   file NAME                                  the sheet's name (default album.cue); "nofile" for a
//   null one blob CODE DISC_MS TRACK_MS BURN MODE HASH  the blob's values, as many as stand there;
//   "iso" is the right code bloblength BYTES                           cuts the blob marker TIME
//   NAME / region START END NAME   of the project, in the host's order; "unnamed TIME" has a null
//   name meta KEY=VALUE                             of the render; without "=" the key is null
//   start TIME                                 project seconds
//   samples VALUE...                           what the following writes repeat
//   write FRAMES BLOCK CHANNELS OFFSET SPACING
//   finish                                     the render is complete; without it the sink is
//   deleted as it is
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace fuzz {

struct ScriptMark {
  bool is_region = false;
  double start = 0.0;
  double end = 0.0;
  std::optional<std::string> name;
};

struct ScriptMetadata {
  std::optional<std::string> key;
  std::string value;
};

/// What happens to the sink, in the script's order.
struct ScriptStep {
  enum class Kind { kStart, kWrite, kFinish } kind = Kind::kFinish;
  double time = 0.0;  ///< of `start`
  int frames = 0;     ///< of `write`, and what follows
  int block = 0;      ///< frames; may be 0 or negative, which writes nothing
  int channels = 2;
  int offset = 0;
  int spacing = 1;             ///< may be 0 or negative
  std::vector<double> values;  ///< never empty in a `write`
};

struct RenderScript {
  std::optional<std::string> file = "album.cue";
  std::vector<int32_t> blob;
  int blob_length = 0;  ///< bytes, at most those of `blob`
  std::vector<ScriptMark> marks;
  std::vector<ScriptMetadata> metadata;
  std::vector<ScriptStep> steps;
};

/// Bounded in all that takes time or space: audio, blocks, silences, marks.
RenderScript parseRenderScript(std::string_view text);

}  // namespace fuzz
