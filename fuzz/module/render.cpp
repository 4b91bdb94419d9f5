// A whole render through the registered sink, as a script tells it.
#include <strings.h>

#include <cmath>
#include <cstring>
#include <memory>

#include "abi/exports.h"
#include "abi/host_functions.h"
#include "abi/quelm_provider.h"
#include "abi/sink_registration.h"
#include "fuzz/kit/fuzz_target.h"
#include "fuzz/module/finished_disc.h"
#include "fuzz/module/memory_files.h"
#include "fuzz/module/render_script.h"

namespace {

using fuzz::MemoryFiles;
using fuzz::RenderScript;
using fuzz::require;
using fuzz::ScriptMark;
using fuzz::ScriptMetadata;
using fuzz::ScriptStep;

const RenderScript* g_script = nullptr;
SinkRegistration* g_sink = nullptr;
bool g_write_failed = false;

// The host's functions. Indices after the first are the host's own affair: these do not count up by
// one.

constexpr int kIndexStep = 3;

int enumMarkers(int idx, bool* isrgn, double* pos, double* rgnend, const char** name, int* number) {
  require(idx >= 0 && idx % kIndexStep == 0, "marker indices are those the host gave out");
  const auto entry = static_cast<size_t>(idx / kIndexStep);
  if (entry >= g_script->marks.size()) return 0;
  const ScriptMark& mark = g_script->marks[entry];
  if (isrgn) *isrgn = mark.is_region;
  if (pos) *pos = mark.start;
  if (rgnend) *rgnend = mark.end;
  if (name) *name = mark.name ? mark.name->c_str() : nullptr;
  if (number) *number = idx;
  return idx + kIndexStep;
}

const char* enumMetadata(int idx, const char** key) {
  const auto entry = static_cast<size_t>(idx);
  if (idx < 0 || entry >= g_script->metadata.size()) return nullptr;
  const ScriptMetadata& metadata = g_script->metadata[entry];
  *key = metadata.key ? metadata.key->c_str() : nullptr;
  return metadata.value.c_str();
}

void countDisk(int /*read*/, int write) {
  if (write < 0) g_write_failed = true;
}

HWND noWindow() {
  return nullptr;
}

const char* noPath() {
  return "";
}

void* hostFunction(const char* name) {
  if (strcmp(name, "EnumProjectMarkers") == 0) return reinterpret_cast<void*>(enumMarkers);
  if (strcmp(name, "EnumCurrentSinkMetadata") == 0) return reinterpret_cast<void*>(enumMetadata);
  if (strcmp(name, "update_disk_counters") == 0) return reinterpret_cast<void*>(countDisk);
  if (strcmp(name, "GetMainHwnd") == 0) return reinterpret_cast<void*>(noWindow);
  if (strcmp(name, "GetExePath") == 0) return reinterpret_cast<void*>(noPath);
  if (strcmp(name, "get_ini_file") == 0) return reinterpret_cast<void*>(noPath);
  return nullptr;
}

int registerRecord(const char* kind, void* record) {
  require(strcmp(kind, "pcmsink") == 0, "the module registers a sink");
  g_sink = static_cast<SinkRegistration*>(record);
  return 1;
}

// A windowing layer without windows: every function is there and answers 0.
intptr_t nothing() {
  return 0;
}

void* layerFunction(const char* name) {
  return name ? reinterpret_cast<void*>(nothing) : reinterpret_cast<void*>(kQuelmApiVersion);
}

SinkRegistration& boundSink() {
  if (!g_sink) {
    velmor_plugin_info_t info{kVelmorPluginVersion, nullptr, registerRecord, hostFunction};
    require(VelmorPluginEntry(nullptr, &info) == 1,
            "the module binds to a host that has everything");
  }
  return *g_sink;
}

/// Where the module puts the image.
std::string imageBeside(const std::string& sheet) {
  const bool named_as_sheet =
      sheet.size() == 4 ||
      (sheet.size() > 4 && strcasecmp(sheet.c_str() + sheet.size() - 4, ".cue") == 0);
  return (named_as_sheet ? sheet.substr(0, sheet.rfind('.')) : sheet) + ".bin";
}

/// Requires that nobody has a file of the render any more, nor its lock.
void requireClosed(const std::string& name) {
  require(MemoryFiles::exists(name), "a render's file is there after it");
  require(!MemoryFiles::isHeld(name), "nobody holds a render's file after it");
}

/// One channel's buffer, without a sample to spare on either side.
struct ChannelBuffer {
  std::vector<double> samples;
  int offset;  ///< of the first frame

  ChannelBuffer(const ScriptStep& step, int frames) {
    const int reach = (frames - 1) * step.spacing;
    offset = step.offset + (reach < 0 ? -reach : 0);
    const size_t count = static_cast<size_t>(offset + (reach > 0 ? reach : 0)) + 1;
    samples.resize(count);
    // What is there is copied behind itself, again and again.
    size_t there = std::min(count, step.values.size());
    std::copy(step.values.data(), step.values.data() + there, samples.data());
    while (there < count) {
      const size_t more = std::min(there, count - there);
      std::copy(samples.data(), samples.data() + more, samples.data() + there);
      there += more;
    }
  }
};

void writeBlocks(PCM_sink& sink, const ScriptStep& step) {
  if (step.block <= 0) {
    sink.WriteDoubles(nullptr, step.block, step.channels, step.offset, step.spacing);
    return;
  }
  for (int left = step.frames; left > 0;) {
    // A full block's buffers serve for all full blocks; the rest has buffers of its own.
    const int frames = std::min(left, step.block);
    ChannelBuffer first(step, frames);
    ChannelBuffer second(step, frames);
    // Only the first two are looked at.
    double* channels[4] = {first.samples.data(),
                           step.channels > 1 ? second.samples.data() : nullptr};
    for (; left >= frames; left -= frames) {
      sink.WriteDoubles(channels, frames, step.channels, first.offset, step.spacing);
    }
  }
}

/// The questions a host asks; the answers are those of every disc.
void ask(PCM_sink& sink) {
  int rate = 0;
  int channels = 0;
  int bits = 0;
  require(sink.Extended(kSinkQueryFormat, &rate, &channels, nullptr) == 1 && rate == 44100 &&
              channels == 2,
          "the sink wants what a disc takes");
  require(sink.Extended(kSinkQueryBitDepth, &bits, nullptr, nullptr) == 1 && bits == 16,
          "a disc has 16 bits");
  require(sink.GetFileName() != nullptr, "a usable sink has a name");
  require(std::isfinite(sink.GetLength()) && sink.GetLength() >= 0.0, "a length is a number");
  char text[8];
  sink.GetOutputInfoString(text, sizeof(text));
  require(memchr(text, 0, sizeof(text)) != nullptr, "a description fits its buffer");
}

/// Plays the steps; whether the render was finished.
bool play(PCM_sink& sink, const std::string& sheet, const std::string& image) {
  bool finished = false;
  size_t changes = 0;
  for (const ScriptStep& step : g_script->steps) {
    switch (step.kind) {
      case ScriptStep::Kind::kStart:
        sink.SetStartTime(step.time);
        break;
      case ScriptStep::Kind::kWrite:
        writeBlocks(sink, step);
        break;
      case ScriptStep::Kind::kFinish:
        require(sink.Extended(kSinkRenderFinished, nullptr, nullptr, nullptr) == 1,
                "a finish is answered");
        if (!finished) {
          changes = MemoryFiles::changes();
          fuzz::requireWholeDisc(MemoryFiles::contents(sheet), MemoryFiles::contents(image).size(),
                                 sink.GetLength());
          requireClosed(sheet);
          requireClosed(image);
        }
        finished = true;
        break;
    }
    require(!finished || MemoryFiles::changes() == changes, "a finished disc takes nothing more");
    ask(sink);
  }
  return finished;
}

void render(SinkRegistration& registration) {
  std::vector<char> blob(static_cast<size_t>(std::max(g_script->blob_length, 0)));
  if (!blob.empty()) memcpy(blob.data(), g_script->blob.data(), blob.size());
  const char* const file = g_script->file ? g_script->file->c_str() : nullptr;
  const char* const extension = registration.GetExtension(blob.data(), g_script->blob_length);
  std::unique_ptr<PCM_sink> sink(
      registration.CreateSink(file, blob.data(), g_script->blob_length, 2, 44100, false));
  if (!sink) return;
  require(file && extension, "only a name and a blob of ours make a sink");
  const std::string sheet = file;
  const std::string image = imageBeside(sheet);
  ask(*sink);
  const bool finished = play(*sink, sheet, image);
  sink.reset();
  requireClosed(sheet);
  requireClosed(image);
  if (!finished) {
    require(MemoryFiles::contents(sheet).empty(), "a render given up leaves no sheet");
  }
  require(!g_write_failed, "no write fails");
}

}  // namespace

// What the module looks for among the program's symbols when it is loaded.
extern "C" __attribute__((visibility("default"))) QuelmLookupFn quelmGetAPPAPIFunc();
extern "C" QuelmLookupFn quelmGetAPPAPIFunc() {
  return layerFunction;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const RenderScript script = fuzz::parseRenderScript(fuzz::textOf(data, size));
  g_script = &script;
  g_write_failed = false;
  SinkRegistration& registration = boundSink();
  const MemoryFiles files;
  render(registration);
  require(MemoryFiles::openCount() == 0, "a render leaves no file open");
  g_script = nullptr;
  return 0;
}
