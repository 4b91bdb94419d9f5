#include "host/render/input/marks/embedded_marks.h"

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <optional>
#include <span>
#include <string_view>
#include <utility>

#include "host/render/input/formats/flac_blocks.h"
#include "host/render/input/marks/wav_marks.h"

namespace velmor::render {
namespace {

/// No album has more marks than this holds; a size beyond it is damage.
constexpr unsigned kLargestChunk = 16U << 20;
constexpr size_t kMostLists = 16;
constexpr uint32_t kMostCuePoints = 65536;

using Chunk = std::vector<std::byte>;

SF_CHUNK_INFO chunkNamed(const char* id) {
  SF_CHUNK_INFO info{};
  std::memcpy(info.id, id, 4);
  info.id_size = 4;
  return info;
}

Chunk dataOf(const SF_CHUNK_ITERATOR* at) {
  SF_CHUNK_INFO info{};
  if (sf_get_chunk_size(at, &info) != SF_ERR_NO_ERROR) return {};
  if (info.datalen == 0 || info.datalen > kLargestChunk) return {};
  Chunk bytes(info.datalen);
  info.data = bytes.data();
  if (sf_get_chunk_data(at, &info) != SF_ERR_NO_ERROR) return {};
  return bytes;
}

std::vector<Chunk> chunksNamed(SNDFILE* file, const char* id, size_t most) {
  std::vector<Chunk> chunks;
  const SF_CHUNK_INFO wanted = chunkNamed(id);
  SF_CHUNK_ITERATOR* at = sf_get_chunk_iterator(file, &wanted);
  for (; at && chunks.size() < most; at = sf_next_chunk_iterator(at)) {
    chunks.push_back(dataOf(at));
  }
  return chunks;
}

std::vector<WavMark> marksOf(const std::vector<Chunk>& cues, const std::vector<Chunk>& lists,
                             ByteOrder order) {
  if (cues.empty()) return {};
  const std::vector<std::span<const std::byte>> views(lists.begin(), lists.end());
  return parseWavMarks(cues.front(), views, order);
}

// The chunks are read here because libsndfile's own cue points lose the labels of a list that comes
// before the cue chunk, cannot hold names of 256 bytes, and know no regions.
std::vector<WavMark> riffMarks(SNDFILE* file, int format) {
  const bool big = (format & SF_FORMAT_ENDMASK) == SF_ENDIAN_BIG;
  return marksOf(chunksNamed(file, "cue ", 1), chunksNamed(file, "LIST", kMostLists),
                 big ? ByteOrder::kBig : ByteOrder::kLittle);
}

// An encoder asked to keep what a WAV file holds beside its audio stores each chunk, with its id
// and size, in an application block of its own.
std::vector<WavMark> flacMarks(const disc::FileBytes& bytes) {
  constexpr size_t kHeader = 12;  // the application, the chunk's id and its size
  std::vector<Chunk> cues;
  std::vector<Chunk> lists;
  FlacBlocks blocks(bytes);
  while (std::optional<Chunk> block = blocks.next(FlacBlockType::kApplication)) {
    if (block->size() < kHeader) continue;
    const std::string_view header(reinterpret_cast<const char*>(block->data()), 8);
    const bool is_cue = header == "riffcue " && cues.empty();
    const bool is_list = header == "riffLIST" && lists.size() < kMostLists;
    if (!is_cue && !is_list) continue;
    block->erase(block->begin(), block->begin() + kHeader);
    (is_cue ? cues : lists).push_back(std::move(*block));
  }
  return marksOf(cues, lists, ByteOrder::kLittle);
}

std::vector<WavMark> aiffMarks(SNDFILE* file) {
  uint32_t count = 0;
  if (sf_command(file, SFC_GET_CUE_COUNT, &count, sizeof count) != SF_TRUE) return {};
  if (count == 0 || count > kMostCuePoints) return {};
  // A count and as many points; both are made of 32-bit numbers and text, so nothing lies between.
  static_assert(alignof(SF_CUE_POINT) == alignof(uint32_t));
  std::vector<std::byte> record(sizeof count + count * sizeof(SF_CUE_POINT));
  if (sf_command(file, SFC_GET_CUE, record.data(), static_cast<int>(record.size())) != SF_TRUE) {
    return {};
  }
  std::memcpy(&count, record.data(), sizeof count);
  count = std::min(count, static_cast<uint32_t>(record.size() / sizeof(SF_CUE_POINT)));
  std::vector<WavMark> marks;
  for (uint32_t i = 0; i < count; ++i) {
    SF_CUE_POINT point;
    std::memcpy(&point, record.data() + sizeof count + i * sizeof point, sizeof point);
    const std::string_view name(point.name, ::strnlen(point.name, sizeof point.name));
    marks.push_back({point.sample_offset, 0, fileText(name)});
  }
  std::stable_sort(marks.begin(), marks.end(),
                   [](const WavMark& a, const WavMark& b) { return a.start < b.start; });
  return marks;
}

std::vector<WavMark> marksInFrames(SNDFILE* file, const SF_INFO& info,
                                   const disc::FileBytes& bytes) {
  switch (info.format & SF_FORMAT_TYPEMASK) {
    case SF_FORMAT_WAV:
    case SF_FORMAT_WAVEX:
    case SF_FORMAT_RF64:
      return riffMarks(file, info.format);
    case SF_FORMAT_AIFF:
      return aiffMarks(file);
    case SF_FORMAT_FLAC:
      return flacMarks(bytes);
    default:
      return {};
  }
}

}  // namespace

std::vector<Mark> embeddedMarks(SNDFILE* file, const SF_INFO& info, const disc::FileBytes& bytes,
                                std::vector<std::string>& converted) {
  std::vector<Mark> marks;
  const double rate = info.samplerate;
  for (WavMark& found : marksInFrames(file, info, bytes)) {
    if (found.start >= info.frames) break;
    Mark mark;
    mark.start = static_cast<double>(found.start) / rate;
    const int64_t end = std::min<int64_t>(found.start + found.length, info.frames);
    if (end > found.start) mark.end = static_cast<double>(end) / rate;
    if (found.name.was_converted) converted.push_back(found.name.text);
    mark.name = std::move(found.name.text);
    marks.push_back(std::move(mark));
  }
  return marks;
}

}  // namespace velmor::render
