#include "disc/audio/stated_length.h"

#include <cstddef>
#include <string_view>

#include "disc/audio/ogg_pages.h"

namespace velmor::disc {
namespace {

/// Beyond any real file; bounds the walk through a damaged one.
constexpr int kMostChunks = 4096;

/// Whether the size stands for "unknown": a program that writes to a pipe cannot go back to fill it
/// in, and writes one just below 2^31 or 2^32.
bool isUnknownSize(uint64_t size) {
  return size >= 0xffffff00U || (size >= 0x7fffe000U && size <= 0x7fffffffU);
}

struct Chunk {
  int64_t at = 0;  ///< of its contents
  uint64_t size = 0;
};

/// Walks chunks of a 4-byte id and a 4-byte size, padded to even offsets, behind a 12-byte header,
/// to the first of that id.
std::optional<Chunk> findChunk(const FileBytes& file, std::string_view id, bool little_endian) {
  int64_t at = 12;
  for (int i = 0; i < kMostChunks; ++i) {
    const auto size = little_endian ? file.little(at + 4, 4) : file.big(at + 4, 4);
    if (!size) return std::nullopt;
    if (file.has(at, id)) return Chunk{at + 8, *size};
    at += 8 + static_cast<int64_t>(*size + *size % 2);
  }
  return std::nullopt;
}

bool chunkRunsOver(const FileBytes& file, std::string_view audio, bool little_endian) {
  const auto chunk = findChunk(file, audio, little_endian);
  return chunk && !isUnknownSize(chunk->size) && file.runsOver(chunk->at, chunk->size);
}

/// The 64-bit size of the audio stands in the "ds64" chunk, which comes first.
bool rf64RunsOver(const FileBytes& file) {
  const auto audio = file.little(28, 8);
  if (!file.has(12, "ds64") || !audio || *audio == 0) return false;
  const auto chunk = findChunk(file, "data", true);
  return chunk && file.runsOver(chunk->at, chunk->size == 0xffffffffU ? *audio : chunk->size);
}

bool auRunsOver(const FileBytes& file) {
  const auto start = file.big(4, 4);
  const auto size = file.big(8, 4);
  return start && size && !isUnknownSize(*size) &&
         file.runsOver(static_cast<int64_t>(*start), *size);
}

/// Chunks of a 16-byte id, which begins with four characters, and an 8-byte size that counts both,
/// padded to multiples of 8, behind a 40-byte header.
bool w64RunsOver(const FileBytes& file) {
  int64_t at = 40;
  for (int i = 0; i < kMostChunks; ++i) {
    const auto size = file.little(at + 16, 8);
    if (!size || *size < 24 || *size > uint64_t{1} << 62) return false;
    if (file.has(at, "data")) return file.runsOver(at, *size);
    if (file.runsOver(at, *size)) return false;
    at += static_cast<int64_t>((*size + 7) / 8 * 8);
  }
  return false;
}

/// Chunks of a 4-byte id and an 8-byte size behind an 8-byte header. An audio chunk of size -1, the
/// last one, goes on to the file's end.
bool cafRunsOver(const FileBytes& file) {
  constexpr uint64_t kToTheEnd = ~uint64_t{0};
  int64_t at = 8;
  for (int i = 0; i < kMostChunks; ++i) {
    const auto size = file.big(at + 4, 8);
    if (!size) return false;
    if (file.has(at, "data")) return *size != kToTheEnd && file.runsOver(at + 12, *size);
    if (file.runsOver(at + 12, *size)) return false;
    at += 12 + static_cast<int64_t>(*size);
  }
  return false;
}

/// An Ogg file holds one stream, or several side by side, whose first pages then all come first.
/// Each stream marks its last page, so a whole file ends with a page that is marked so.
Extent oggExtent(const FileBytes& file) {
  OggPages pages(file);
  bool ends = false;
  bool music = false;
  while (const std::optional<OggPage> page = pages.next()) {
    if (page->begins && music) return Extent::kSeveralStreams;
    music = music || !page->begins;
    ends = page->ends && page->end <= file.size();
  }
  return ends ? Extent::kWhole : Extent::kBreaksOff;
}

bool runsOver(const FileBytes& file) {
  if (file.has(0, "RIFF")) return chunkRunsOver(file, "data", true);
  if (file.has(0, "RIFX")) return chunkRunsOver(file, "data", false);
  if (file.has(0, "RF64")) return rf64RunsOver(file);
  if (file.has(0, "FORM")) return chunkRunsOver(file, "SSND", false);
  if (file.has(0, ".snd")) return auRunsOver(file);
  if (file.has(0, "riff")) return w64RunsOver(file);
  if (file.has(0, "caff")) return cafRunsOver(file);
  return false;
}

/// An SSND chunk begins with an offset and a block size of four bytes each.
constexpr int64_t kSoundDataHead = 8;

}  // namespace

Container containerOf(const FileBytes& file) {
  const bool riff = file.has(0, "RIFF") || file.has(0, "RF64") || file.has(0, "RIFX");
  if (riff && file.has(8, "WAVE")) return Container::kWave;
  if (file.has(0, "FORM") && (file.has(8, "AIFF") || file.has(8, "AIFC"))) return Container::kAiff;
  if (file.has(0, "fLaC")) return Container::kFlac;
  return Container::kOther;
}

std::optional<int64_t> samplesIn(const FileBytes& file) {
  const Container container = containerOf(file);
  std::optional<Chunk> chunk;
  if (container == Container::kWave) chunk = findChunk(file, "data", !file.has(0, "RIFX"));
  if (container == Container::kAiff) chunk = findChunk(file, "SSND", false);
  if (!chunk) return std::nullopt;
  return chunk->at + (container == Container::kAiff ? kSoundDataHead : 0);
}

Extent extentOf(const FileBytes& file) {
  if (file.has(0, "OggS")) return oggExtent(file);
  return runsOver(file) ? Extent::kBreaksOff : Extent::kWhole;
}

}  // namespace velmor::disc
