#include "tests/host/render/module/module_render.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <memory>
#include <sstream>

#include "host/render/album/host_project.h"
#include "host/render/module/host_callbacks.h"
#include "host/render/module/module_library.h"
#include "tests/host/render/input/sound_files.h"
#include "tests/kit/whole_files.h"

namespace velmor::render::test {

namespace {

const ModuleLibrary& module() {
  static const ModuleLibrary kLibrary(VELMOR_MODULE);
  return kLibrary;
}

void readSheet(const std::string& path, ModuleRender& render) {
  std::istringstream sheet(test_kit::contentOf(path));
  std::string line;
  while (std::getline(sheet, line)) {
    if (line.rfind("  TRACK", 0) == 0) {
      render.titles.emplace_back();
      render.gaps.emplace_back();
      render.isrcs.emplace_back();
    }
    if (line.rfind("    INDEX 00 ", 0) == 0) render.gaps.back() = line.substr(13, 8);
    if (line.rfind("    TITLE \"", 0) == 0)
      render.titles.back() = line.substr(11, line.size() - 13);
    if (line.rfind("    ISRC \"", 0) == 0) render.isrcs.back() = line.substr(10, line.size() - 12);
    if (line.rfind("    INDEX 01 ", 0) == 0) render.indexes.push_back(line.substr(13, 8));
  }
}

void readImage(const std::string& path, ModuleRender& render) {
  render.image_bytes = static_cast<int64_t>(std::filesystem::file_size(path));
  std::vector<int16_t> samples(static_cast<size_t>(render.image_bytes) / 2);
  std::ifstream file(path, std::ios::binary);
  file.read(reinterpret_cast<char*>(samples.data()), render.image_bytes);
  render.left.resize(samples.size() / 2);
  int16_t* to = render.left.data();
  const int16_t* const end = samples.data() + samples.size() / 2 * 2;
  for (const int16_t* from = samples.data(); from != end; from += 2) *to++ = *from;
}

void play(PCM_sink& sink, int64_t frames, int block) {
  std::vector<double> samples(static_cast<size_t>(block));
  double* channels[] = {samples.data(), samples.data()};
  for (int64_t at = 0; at < frames; at += block) {
    const int count = static_cast<int>(std::min<int64_t>(block, frames - at));
    double* to = samples.data();
    for (int i = 0; i < count; ++i) *to++ = sampleAt(at + i) / 32768.0;
    sink.WriteDoubles(channels, count, 2, 0, 1);
  }
}

}  // namespace

int16_t sampleAt(int64_t frame) {
  return static_cast<int16_t>(1 + frame % 32767);
}

ModuleRender renderThroughModule(const SinkConfig& config, const std::vector<Mark>& marks,
                                 int64_t frames, int block) {
  const Folder folder;
  const HostProject project{marks, {}};
  openProject(project);
  SinkConfig blob = config;
  const std::string sheet = folder.path("disc.cue");
  const std::unique_ptr<PCM_sink> sink(
      module().sink().CreateSink(sheet.c_str(), &blob, sizeof(blob), 2, 44100, false));
  ModuleRender render;
  if (!sink) {
    ADD_FAILURE() << "the module made no sink";
    return render;
  }
  play(*sink, frames, block);
  sink->Extended(kSinkRenderFinished, nullptr, nullptr, nullptr);
  render.seconds = sink->GetLength();
  readSheet(sheet, render);
  readImage(folder.path("disc.bin"), render);
  return render;
}

std::string sheetTime(double seconds) {
  const int whole = static_cast<int>(seconds);
  const int milliseconds = static_cast<int>(seconds * 1000.0) % 1000;
  char text[48];
  snprintf(text, sizeof(text), "%02d:%02d:%02d", whole / 60, whole % 60, milliseconds * 75 / 1000);
  return text;
}

}  // namespace velmor::render::test
