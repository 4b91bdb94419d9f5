#include "host/render/input/marks/wav_marks.h"

#include <algorithm>
#include <string_view>
#include <unordered_map>

#include "disc/audio/file_bytes.h"

namespace velmor::render {
namespace {

using Bytes = std::span<const std::byte>;

constexpr size_t kCuePointSize = 24;  // id, position, chunk id, chunk start, block start, sample
constexpr size_t kSampleOffset = 20;  // of the last of these
constexpr size_t kRegionHeaderSize =
    20;  // id, length, purpose, country, language, dialect, code page

/// What an associated data list says of one cue point.
struct Annotation {
  FileText label, region_text, note;
  uint32_t length = 0;
};
using Annotations = std::unordered_map<uint32_t, Annotation>;

/// `at + 4` must not exceed the size.
uint32_t numberAt(Bytes bytes, size_t at, ByteOrder order) {
  uint32_t value = 0;
  for (size_t i = 0; i < 4; ++i) {
    const size_t from = order == ByteOrder::kLittle ? at + 3 - i : at + i;
    value = value << 8 | std::to_integer<uint32_t>(bytes[from]);
  }
  return value;
}

void setOnce(FileText& text, Bytes bytes) {
  if (text.text.empty()) text = fileText(disc::charactersOf(bytes));
}

void annotate(Annotations& annotations, std::string_view id, Bytes body, ByteOrder order) {
  if (body.size() < 4) return;
  const uint32_t point = numberAt(body, 0, order);
  if (id == "labl") {
    setOnce(annotations[point].label, body.subspan(4));
  } else if (id == "note") {
    setOnce(annotations[point].note, body.subspan(4));
  } else if (id == "ltxt" && body.size() >= kRegionHeaderSize) {
    Annotation& annotation = annotations[point];
    if (annotation.length == 0) annotation.length = numberAt(body, 4, order);
    setOnce(annotation.region_text, body.subspan(kRegionHeaderSize));
  }
}

/// An id that associated data lists are made of.
bool beginsWithId(Bytes bytes) {
  if (bytes.size() < 4) return false;
  const std::string_view id = disc::charactersOf(bytes.first(4));
  return id == "labl" || id == "note" || id == "ltxt" || id == "file";
}

void readList(Annotations& annotations, Bytes list, ByteOrder order) {
  if (list.size() < 4 || disc::charactersOf(list.first(4)) != "adtl") return;
  Bytes rest = list.subspan(4);
  while (rest.size() >= 8) {
    const size_t size = numberAt(rest, 4, order);
    if (size > rest.size() - 8) return;
    annotate(annotations, disc::charactersOf(rest.first(4)), rest.subspan(8, size), order);
    rest = rest.subspan(8 + size);
    // Chunks begin at even offsets, but not every program writes the pad byte.
    if (size % 2 != 0 && !rest.empty() && !beginsWithId(rest)) rest = rest.subspan(1);
  }
}

FileText nameIn(const Annotation& annotation) {
  if (!annotation.label.text.empty()) return annotation.label;
  return annotation.region_text.text.empty() ? annotation.note : annotation.region_text;
}

}  // namespace

std::vector<WavMark> parseWavMarks(Bytes cue, std::span<const Bytes> lists, ByteOrder order) {
  if (cue.size() < 4) return {};
  const size_t count = numberAt(cue, 0, order);
  if (count > (cue.size() - 4) / kCuePointSize) return {};

  Annotations annotations;
  for (const Bytes list : lists) readList(annotations, list, order);

  std::vector<WavMark> marks;
  marks.reserve(count);
  for (size_t i = 0; i < count; ++i) {
    const Bytes point = cue.subspan(4 + i * kCuePointSize, kCuePointSize);
    WavMark mark;
    mark.start = numberAt(point, kSampleOffset, order);
    if (const auto found = annotations.find(numberAt(point, 0, order));
        found != annotations.end()) {
      mark.length = found->second.length;
      mark.name = nameIn(found->second);
    }
    marks.push_back(std::move(mark));
  }
  std::stable_sort(marks.begin(), marks.end(),
                   [](const WavMark& a, const WavMark& b) { return a.start < b.start; });
  return marks;
}

}  // namespace velmor::render
