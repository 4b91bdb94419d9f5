// A whole image written through the sink, beside the bare writes of the same image.
#include <benchmark/benchmark.h>
#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "abi/host_functions.h"
#include "abi/sink_registration.h"
#include "module/plugin/sink_registration.h"
#include "module/sink/sample_conversion.h"
#include "module/support/cd_units.h"
#include "module/support/file_write.h"
#include "tests/kit/scratch_folder.h"

namespace {

constexpr int kBlock = 1024;
constexpr int kSeconds = 300;
constexpr int kBlocks = kSeconds * 44100 / kBlock;
constexpr size_t kWrite = 131072;

int g_markers = 0;

// Every marker lies in front of the audio that is timed, too close to the one before it to make a
// track.
int enumMarkers(int idx, bool* isrgn, double* pos, double* rgnend, const char** name, int*) {
  if (idx >= g_markers) return 0;
  *isrgn = false;
  *pos = 1.0 + 0.0001 * idx;
  if (rgnend) *rgnend = 0.0;
  *name = "marker";
  return idx + 1;
}

void ignoreCounters(int, int) {}

PCM_sink* makeSink(const std::string& sheet) {
  EnumProjectMarkers = enumMarkers;
  update_disk_counters = ignoreCounters;
  SinkConfig config{};
  config.format_code = static_cast<int32_t>(kIsoFormatCode);
  return mySinkRegStruct.CreateSink(sheet.c_str(), &config, sizeof(config), 2, 44100, false);
}

struct Audio {
  std::vector<double> left = std::vector<double>(kBlock);
  std::vector<double> right = std::vector<double>(kBlock);
  Audio() {
    for (size_t i = 0; i < kBlock; ++i) {
      left[i] = static_cast<double>(i % 200) / 150.0 - 0.6;
      right[i] = -left[i];
    }
  }
  void writeTo(PCM_sink& sink) {
    double* channels[] = {left.data(), right.data()};
    sink.WriteDoubles(channels, kBlock, 2, 0, 1);
  }
};

void imageThroughTheSink(benchmark::State& state) {
  const test_kit::ScratchFolder folder;
  Audio audio;
  g_markers = 0;
  for (auto _ : state) {
    PCM_sink* const sink = makeSink(folder.file("album.cue"));
    for (int i = 0; i < kBlocks; ++i) audio.writeTo(*sink);
    delete sink;
  }
  state.SetBytesProcessed(state.iterations() * int64_t{kBlocks} * kBlock * 4);
}

/// What the sink does to every block, with the conversion that the oldest processors get.
void imageWithBaselineConversion(benchmark::State& state) {
  const test_kit::ScratchFolder folder;
  const std::string path = folder.file("album.bin");
  const Audio audio;
  const VectorForm& baseline = vectorForms().back();
  std::vector<int16_t> converted(2 * kBlock);
  update_disk_counters = ignoreCounters;
  for (auto _ : state) {
    YDK_FileWrite image(path.c_str(), 0, 8192, 16, 16, false, false);
    for (int i = 0; i < kBlocks; ++i) {
      baseline.convert(audio.left.data(), audio.right.data(), kBlock, converted.data());
      image.Write(converted.data(), kBlock * kFrameBytes);
    }
  }
  state.SetBytesProcessed(state.iterations() * int64_t{kBlocks} * kBlock * kFrameBytes);
}

void imageBareWrites(benchmark::State& state) {
  const test_kit::ScratchFolder folder;
  const std::string path = folder.file("album.bin");
  const std::vector<char> piece(kWrite, 1);
  const auto total = int64_t{kBlocks} * kBlock * 4;
  for (auto _ : state) {
    const int fd = open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0644);
    for (int64_t at = 0; at < total; at += static_cast<int64_t>(kWrite)) {
      const auto n =
          static_cast<size_t>(std::min<int64_t>(static_cast<int64_t>(kWrite), total - at));
      if (pwrite(fd, piece.data(), n, at) != static_cast<ssize_t>(n)) abort();
    }
    close(fd);
  }
  state.SetBytesProcessed(state.iterations() * total);
}

/// The cost of a block behind `state.range(0)` markers.
void blockBehindMarkers(benchmark::State& state) {
  const test_kit::ScratchFolder folder;
  Audio audio;
  g_markers = static_cast<int>(state.range(0));
  PCM_sink* sink = makeSink(folder.file("album.cue"));
  for (int i = 0; i < 4 * 44100 / kBlock; ++i) audio.writeTo(*sink);
  int64_t written = 0;
  for (auto _ : state) {
    audio.writeTo(*sink);
    if (++written % (60 * 44100 / kBlock) == 0) {
      state.PauseTiming();
      std::filesystem::resize_file(folder.file("album.bin"), 0);
      state.ResumeTiming();
    }
  }
  delete sink;
}

BENCHMARK(imageThroughTheSink)->Unit(benchmark::kMillisecond);
BENCHMARK(imageWithBaselineConversion)->Unit(benchmark::kMillisecond);
BENCHMARK(imageBareWrites)->Unit(benchmark::kMillisecond);
BENCHMARK(blockBehindMarkers)->Arg(10)->Arg(10000);

}  // namespace
