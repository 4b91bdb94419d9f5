// The pages of an Ogg file (RFC 3533).
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>

#include "disc/audio/file_bytes.h"

namespace velmor::disc {

struct OggPage {
  bool continues = false;  ///< its first bytes belong to a packet of the page before
  bool begins = false;     ///< the first page of its stream
  bool ends = false;       ///< the last page of its stream
  uint32_t stream = 0;
  std::array<unsigned char, 255> segments{};  ///< lengths; one below 255 ends a packet
  size_t segment_count = 0;
  int64_t body = 0;  ///< offset in the file
  int64_t end = 0;   ///< offset behind the body; beyond the file's size when the page is cut off
};

/// Walks an Ogg file from its start and, like a player, over foreign bytes between pages.
class OggPages {
 public:
  explicit OggPages(const FileBytes& file) : m_file(file) {}
  std::optional<OggPage> next();

 private:
  std::optional<int64_t> find(int64_t from) const;

  const FileBytes& m_file;
  int64_t m_at = 0;
};

}  // namespace velmor::disc
