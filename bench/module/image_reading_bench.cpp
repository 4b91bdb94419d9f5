// The producer's way through an image, beside a bare loop of reads; and seeks that stay inside the
// buffer.
#include <benchmark/benchmark.h>
#include <fcntl.h>
#include <unistd.h>

#include <cstdint>
#include <cstdlib>
#include <string>
#include <vector>

#include "abi/track_source.h"
#include "module/support/cd_units.h"
#include "module/support/file_read.h"
#include "tests/kit/scratch_folder.h"

namespace {

constexpr int kSectors = 20000;  // 47 MB
constexpr int kBytes = kSectors * kSectorBytes;
constexpr int kRead = 32768;
constexpr uint32_t kRequest = 13 * kSectorBytes;

std::string makeImage(const test_kit::ScratchFolder& folder) {
  const std::string path = folder.file("album.bin");
  const int fd = open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0644);
  const std::vector<char> sector(kSectorBytes, 7);
  for (int i = 0; i < kSectors; ++i) {
    if (write(fd, sector.data(), sector.size()) != kSectorBytes) abort();
  }
  close(fd);
  return path;
}

/// The reader gives its pages back, so the image is brought into the cache before every round.
void readBare(const std::string& path) {
  const int fd = open(path.c_str(), O_RDONLY);
  std::vector<char> buffer(kRead);
  int64_t at = 0;
  for (ssize_t n = 0; (n = pread(fd, buffer.data(), kRead, at)) > 0;) {
    at += n;
    benchmark::ClobberMemory();
  }
  close(fd);
  if (at != kBytes) abort();
}

void readThroughTheProducer(benchmark::State& state) {
  const test_kit::ScratchFolder folder;
  const std::string path = makeImage(folder);
  std::vector<char> buffer(kRequest);
  for (auto _ : state) {
    state.PauseTiming();
    readBare(path);
    state.ResumeTiming();
    YDK_FileRead image(path.c_str());
    CDBurnTrackSource track;
    track.file = &image;
    track.lenbytes = kBytes;
    int64_t got = 0;
    while (const uint32_t n = track.ProduceData(buffer.data(), kRequest)) got += n;
    if (got != kBytes) abort();
  }
  state.SetBytesProcessed(state.iterations() * kBytes);
}

void readBareLoop(benchmark::State& state) {
  const test_kit::ScratchFolder folder;
  const std::string path = makeImage(folder);
  for (auto _ : state) readBare(path);
  state.SetBytesProcessed(state.iterations() * kBytes);
}

void seekInsideTheBuffer(benchmark::State& state) {
  const test_kit::ScratchFolder folder;
  const std::string path = makeImage(folder);
  YDK_FileRead image(path.c_str());
  char byte = 0;
  image.Read(&byte, 1);
  int64_t at = 0;
  for (auto _ : state) {
    at = (at + 4096 + 4) & 0x1FFF;
    benchmark::DoNotOptimize(image.SetPosition(at + 1));
  }
}

BENCHMARK(readThroughTheProducer)->Unit(benchmark::kMillisecond);
BENCHMARK(readBareLoop)->Unit(benchmark::kMillisecond);
BENCHMARK(seekInsideTheBuffer);

}  // namespace
