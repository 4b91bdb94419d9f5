#include "host/render/input/marks/vorbis_comments.h"

#include <algorithm>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "disc/audio/ogg_pages.h"
#include "disc/codes/isrc.h"
#include "disc/text/line_of_text.h"
#include "host/render/input/formats/flac_blocks.h"

namespace velmor::render {
namespace {

using Block = std::vector<std::byte>;

/// Comments can hold a picture; what is larger is damage.
constexpr size_t kLargestBlock = size_t{16} << 20;

/// Appends the segments of `page` to `packet`; true when they end it. Nothing when the file has no
/// more, or the packet gets too large.
std::optional<bool> appendPacket(const disc::FileBytes& file, const disc::OggPage& page,
                                 Block& packet) {
  size_t length = 0;
  bool ends = false;
  for (size_t i = 0; i < page.segment_count && !ends; ++i) {
    length += page.segments[i];
    ends = page.segments[i] < 255;
  }
  const size_t before = packet.size();
  if (before + length > kLargestBlock) return std::nullopt;
  packet.resize(before + length);
  if (!file.read(page.body, reinterpret_cast<char*>(packet.data() + before), length)) {
    return std::nullopt;
  }
  return ends;
}

/// The second packet of the file's first stream. The first one has a page to itself (RFC 7845;
/// Vorbis I, appendix A).
Block secondPacket(const disc::FileBytes& file) {
  disc::OggPages pages(file);
  const std::optional<disc::OggPage> first = pages.next();
  if (!first || !first->begins) return {};
  Block packet;
  while (const std::optional<disc::OggPage> page = pages.next()) {
    if (page->stream != first->stream) continue;
    const std::optional<bool> ends = appendPacket(file, *page, packet);
    if (!ends) return {};
    if (*ends) return packet;
  }
  return {};
}

Block oggComments(const disc::FileBytes& file) {
  Block packet = secondPacket(file);
  for (const std::string_view head : {std::string_view("\3vorbis"), std::string_view("OpusTags")}) {
    if (disc::charactersOf(packet).substr(0, head.size()) != head) continue;
    packet.erase(packet.begin(), packet.begin() + static_cast<std::ptrdiff_t>(head.size()));
    return packet;
  }
  return {};
}

/// Takes a 32-bit number off `rest`.
std::optional<size_t> takeNumber(std::string_view& rest) {
  if (rest.size() < 4) return std::nullopt;
  size_t number = 0;
  for (size_t i = 4; i-- > 0;) number = number << 8 | static_cast<unsigned char>(rest[i]);
  rest.remove_prefix(4);
  return number;
}

/// Takes a length and as many characters off `rest`; nothing when they are not all there.
std::optional<std::string_view> takeText(std::string_view& rest) {
  const std::optional<size_t> length = takeNumber(rest);
  if (!length || *length > rest.size()) return std::nullopt;
  const std::string_view text = rest.substr(0, *length);
  rest.remove_prefix(*length);
  return text;
}

/// The value of a comment NAME=value, when `comment` is of that name, in capitals or not.
std::optional<std::string_view> valueOf(std::string_view comment, std::string_view name) {
  if (comment.size() <= name.size() || comment[name.size()] != '=') return std::nullopt;
  const auto is_same = [](char capital, char c) {
    return c == capital || (c >= 'a' && c <= 'z' && c - 'a' + 'A' == capital);
  };
  if (!std::equal(name.begin(), name.end(), comment.begin(), is_same)) return std::nullopt;
  return comment.substr(name.size() + 1);
}

void addComment(std::string_view comment, Tags& tags) {
  if (const auto composer = valueOf(comment, "COMPOSER")) {
    const std::string name = tags.read(*composer);
    if (!name.empty() && !tags.songwriter.empty()) tags.songwriter += ", ";
    tags.songwriter += name;
  } else if (const auto code = valueOf(comment, "ISRC"); code && tags.isrc.empty()) {
    tags.isrc = disc::normalisedIsrc(tags.read(*code)).value_or("");
  }
}

std::vector<std::string_view> commentsOf(std::span<const std::byte> block) {
  std::string_view rest = disc::charactersOf(block);
  if (!takeText(rest)) return {};  // the maker's name
  std::vector<std::string_view> comments;
  // What stands behind the last one may be anything (RFC 7845, section 5.2).
  for (size_t left = takeNumber(rest).value_or(0); left > 0; --left) {
    const std::optional<std::string_view> comment = takeText(rest);
    if (!comment) break;
    comments.push_back(*comment);
  }
  return comments;
}

}  // namespace

Block vorbisCommentsIn(const disc::FileBytes& file) {
  if (file.has(0, "OggS")) return oggComments(file);
  return FlacBlocks(file).next(FlacBlockType::kComments).value_or(Block());
}

void addVorbisComments(std::span<const std::byte> block, Tags& tags) {
  for (const std::string_view comment : commentsOf(block)) addComment(comment, tags);
}

std::string cueSheetComment(std::span<const std::byte> block) {
  for (const std::string_view comment : commentsOf(block)) {
    if (const auto sheet = valueOf(comment, "CUESHEET")) return std::string(*sheet);
  }
  return {};
}

}  // namespace velmor::render
