// The metadata blocks of a FLAC file (RFC 9639, section 8).
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

#include "disc/audio/file_bytes.h"

namespace velmor::render {

enum class FlacBlockType : unsigned { kApplication = 2, kComments = 4, kCueSheet = 5 };

/// Walks the blocks from the file's start, behind an ID3v2 tag if there is one.
class FlacBlocks {
 public:
  explicit FlacBlocks(const disc::FileBytes& file);
  /// The body of the next block of this type; nothing when there is none, as in files of another
  /// kind, or when it runs over the file's end.
  std::optional<std::vector<std::byte>> next(FlacBlockType type);

 private:
  const disc::FileBytes& m_file;
  int64_t m_at = 0;
  bool m_last = true;
};

}  // namespace velmor::render
