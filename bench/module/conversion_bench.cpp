// Conversion of one host block, every form side by side with the plain formula and with
// libswresample.
#include <benchmark/benchmark.h>

extern "C" {
#include <libavutil/channel_layout.h>
#include <libswresample/swresample.h>
}

#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <iterator>
#include <limits>
#include <memory>
#include <random>
#include <string>
#include <vector>

#include "module/sink/sample_conversion.h"

namespace {

constexpr int kBlock = 1024;

struct Block {
  std::vector<double> left = std::vector<double>(kBlock);
  std::vector<double> right = std::vector<double>(kBlock);
  std::vector<int16_t> out = std::vector<int16_t>(2 * kBlock);

  Block() {
    std::mt19937 random(1);
    // Music at full level: some samples clip.
    std::normal_distribution<double> music(0.0, 0.4);
    for (double& x : left) x = music(random);
    for (double& x : right) x = music(random);
  }
};

/// What a broken plug-in sends: no numbers, infinities, and samples far out of range, among music.
struct WildBlock : Block {
  WildBlock() {
    const double wild[] = {std::numeric_limits<double>::quiet_NaN(), HUGE_VAL, -HUGE_VAL, 1e15};
    for (size_t i = 0; i < kBlock; i += 4) left[i] = right[i + 1] = wild[i / 4 % std::size(wild)];
  }
};

void convertBlocks(benchmark::State& state, ConvertFramesFn convert, Block block = {}) {
  for (auto _ : state) {
    convert(block.left.data(), block.right.data(), kBlock, block.out.data());
    benchmark::ClobberMemory();
  }
  state.SetItemsProcessed(state.iterations() * kBlock);
}

void conversionPlain(benchmark::State& state) {
  convertBlocks(state, convertFramesPlain);
}

void conversionSwresample(benchmark::State& state) {
  AVChannelLayout stereo;
  av_channel_layout_default(&stereo, 2);
  SwrContext* context = nullptr;
  swr_alloc_set_opts2(&context, &stereo, AV_SAMPLE_FMT_S16, 44100, &stereo, AV_SAMPLE_FMT_DBLP,
                      44100, 0, nullptr);
  if (!context || swr_init(context) < 0) {
    state.SkipWithError("libswresample does not start");
    return;
  }
  Block block;
  const uint8_t* in[] = {reinterpret_cast<const uint8_t*>(block.left.data()),
                         reinterpret_cast<const uint8_t*>(block.right.data())};
  uint8_t* out[] = {reinterpret_cast<uint8_t*>(block.out.data())};
  for (auto _ : state) {
    benchmark::DoNotOptimize(swr_convert(context, out, kBlock, in, kBlock));
    benchmark::ClobberMemory();
  }
  state.SetItemsProcessed(state.iterations() * kBlock);
  swr_free(&context);
}

BENCHMARK(conversionPlain);
BENCHMARK(conversionSwresample);

/// "conversionSse2", "conversionSse2Wild" and so on.
[[maybe_unused]] const bool kVectorFormsAreThere = [] {
  for (const VectorForm& form : vectorForms()) {
    if (!form.runs_here) continue;
    const std::string name = std::string("conversion") + form.name;
    benchmark::RegisterBenchmark(name.c_str(), convertBlocks, form.convert, Block());
    benchmark::RegisterBenchmark((name + "Wild").c_str(), convertBlocks, form.convert, WildBlock());
  }
  return true;
}();

}  // namespace
