// The marks of a WAV file: a first byte for the byte order, then chunks as they lie in the file.
#include "host/render/input/marks/wav_marks.h"

#include <algorithm>
#include <span>
#include <string_view>
#include <vector>

#include "fuzz/host/line_of_text.h"
#include "fuzz/kit/fuzz_target.h"

namespace {

using Bytes = std::span<const std::byte>;
using velmor::render::ByteOrder;

struct Chunks {
  Bytes cue;
  std::vector<Bytes> lists;
};

/// The last chunk may be short of the size it states: it is then all that is left.
Chunks takeChunks(Bytes rest, ByteOrder order) {
  Chunks chunks;
  while (rest.size() >= 8) {
    const std::string_view id(reinterpret_cast<const char*>(rest.data()), 4);
    size_t size = 0;
    for (size_t i = 0; i < 4; ++i) {
      size = size << 8 | std::to_integer<size_t>(rest[order == ByteOrder::kLittle ? 7 - i : 4 + i]);
    }
    const Bytes body = rest.subspan(8, std::min(size, rest.size() - 8));
    if (id == "cue ") chunks.cue = body;
    if (id == "LIST") chunks.lists.push_back(body);
    rest = rest.subspan(8 + body.size());
    if (body.size() % 2 != 0 && !rest.empty()) rest = rest.subspan(1);
  }
  return chunks;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  if (size == 0) return 0;
  const ByteOrder order = data[0] == '>' ? ByteOrder::kBig : ByteOrder::kLittle;
  const Chunks chunks = takeChunks(std::as_bytes(std::span(data, size)).subspan(1), order);
  const auto marks = velmor::render::parseWavMarks(chunks.cue, chunks.lists, order);
  fuzz::require(marks.size() <= chunks.cue.size() / 24, "a mark takes 24 bytes of the cue chunk");
  int64_t before = 0;
  for (const auto& mark : marks) {
    fuzz::require(mark.start >= before, "marks come in ascending start");
    fuzz::require(mark.length >= 0, "a region does not end before it starts");
    fuzz::requireLineOfText(mark.name.text);
    before = mark.start;
  }
  return 0;
}
