#include "fuzz/module/render_script.h"

#include <algorithm>

#include "abi/sink_registration.h"
#include "fuzz/kit/script_line.h"

namespace fuzz {

namespace {

constexpr int kMostFrames = 9 * 44100;  ///< two cuts: a track has four seconds
constexpr int kMostBlocks = 400;
constexpr int kLargestBlock = 65536;
constexpr int kLongestSilence = 1500;  ///< milliseconds
constexpr size_t kMostMarks = 64;
constexpr size_t kMostValues = 16;
constexpr size_t kBlobValues = 6;

class Reader {
 public:
  void take(std::string_view text) {
    ScriptLine line(text);
    const std::string word = line.word();
    if (word == "file" || word == "nofile") {
      m_script.file = word == "file" ? std::optional(fileName(line.rest())) : std::nullopt;
    } else if (word == "blob") {
      takeBlob(line);
    } else if (word == "bloblength") {
      m_blob_length = line.wholeWithin(-4, 24, 0);
    } else if (word == "meta") {
      takeMetadata(line.rest());
    } else if (word == "samples") {
      takeValues(line);
    } else {
      takeMark(word, line);
      takeStep(word, line);
    }
  }

  RenderScript finished() {
    const int whole = static_cast<int>(m_script.blob.size() * sizeof(int32_t));
    m_script.blob_length = std::min(m_blob_length, whole);
    return std::move(m_script);
  }

 private:
  static std::string fileName(std::string name) {
    std::replace(name.begin(), name.end(), '/', '_');
    return name;
  }

  void takeBlob(ScriptLine& line) {
    std::vector<int32_t>& blob = m_script.blob;
    blob.clear();
    while (blob.size() < kBlobValues && !line.atEnd()) {
      const bool silence = blob.size() == 1 || blob.size() == 2;
      ScriptLine at = line;
      if (at.word() == "iso") {
        line = at;
        blob.push_back(static_cast<int32_t>(kIsoFormatCode));
      } else {
        blob.push_back(silence ? line.wholeWithin(-kLongestSilence, kLongestSilence, 0)
                               : line.whole());
      }
    }
    // The right code in a silence's place would be half an hour of it.
    for (size_t i = 1; i < std::min<size_t>(blob.size(), 3); ++i)
      blob[i] = std::min(blob[i], kLongestSilence);
  }

  void takeMetadata(const std::string& text) {
    if (m_script.metadata.size() >= kMostMarks) return;
    const size_t equals = text.find('=');
    if (equals == std::string::npos) {
      m_script.metadata.push_back({std::nullopt, text});
    } else {
      m_script.metadata.push_back({text.substr(0, equals), text.substr(equals + 1)});
    }
  }

  void takeValues(ScriptLine& line) {
    m_values.clear();
    while (m_values.size() < kMostValues && !line.atEnd()) m_values.push_back(line.number());
    if (m_values.empty()) m_values.push_back(0.0);
  }

  void takeMark(const std::string& word, ScriptLine& line) {
    if (m_script.marks.size() >= kMostMarks) return;
    ScriptMark mark;
    mark.is_region = word == "region";
    if (word != "marker" && word != "unnamed" && !mark.is_region) return;
    mark.start = line.number();
    if (mark.is_region) mark.end = line.number();
    if (word != "unnamed") mark.name = line.rest();
    m_script.marks.push_back(std::move(mark));
  }

  void takeStep(const std::string& word, ScriptLine& line) {
    ScriptStep step;
    if (word == "start") {
      step.kind = ScriptStep::Kind::kStart;
      step.time = line.number();
    } else if (word == "write") {
      step.kind = ScriptStep::Kind::kWrite;
      takeWrite(step, line);
    } else if (word != "finish") {
      return;
    }
    m_script.steps.push_back(std::move(step));
  }

  void takeWrite(ScriptStep& step, ScriptLine& line) {
    step.frames = line.wholeWithin(0, m_frames_left, 0);
    step.block = line.wholeWithin(-1, kLargestBlock, 1024);
    if (step.block > 0) {
      // The last blocks may be short of frames, never of the script's time.
      step.frames =
          static_cast<int>(std::min<int64_t>(step.frames, int64_t{step.block} * m_blocks_left));
      m_blocks_left -= (step.frames + step.block - 1) / step.block;
      m_frames_left -= step.frames;
    }
    step.channels = line.wholeWithin(0, 4, 2);
    step.offset = line.wholeWithin(0, 64, 0);
    step.spacing = line.wholeWithin(-4, 4, 1);
    step.values = m_values;
  }

  RenderScript m_script;
  int m_blob_length = static_cast<int>(kBlobValues * sizeof(int32_t));
  std::vector<double> m_values = {0.25};
  int m_frames_left = kMostFrames;
  int m_blocks_left = kMostBlocks;
};

}  // namespace

RenderScript parseRenderScript(std::string_view text) {
  Reader reader;
  while (!text.empty()) reader.take(takeLine(text));
  return reader.finished();
}

}  // namespace fuzz
