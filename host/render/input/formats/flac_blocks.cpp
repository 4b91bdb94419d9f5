#include "host/render/input/formats/flac_blocks.h"

namespace velmor::render {
namespace {

/// Behind an ID3v2 tag, whose size is made of four groups of seven bits and does not count its
/// header (ID3v2.4.0, section 3.1).
int64_t behindId3(const disc::FileBytes& file) {
  constexpr int64_t kHeader = 10;
  const auto groups = file.big(6, 4);
  if (!file.has(0, "ID3") || !groups) return 0;
  int64_t size = 0;
  for (unsigned shift = 32; shift > 0; shift -= 8) {
    size = size << 7 | static_cast<int64_t>(*groups >> (shift - 8) & 0x7f);
  }
  return kHeader + size;
}

}  // namespace

FlacBlocks::FlacBlocks(const disc::FileBytes& file) : m_file(file), m_at(behindId3(file)) {
  if (!file.has(m_at, "fLaC")) return;
  m_at += 4;
  m_last = false;
}

std::optional<std::vector<std::byte>> FlacBlocks::next(FlacBlockType type) {
  while (!m_last) {
    const auto header = m_file.big(m_at, 4);  // a bit, seven of type and 24 of size
    const uint64_t size = header.value_or(0) & 0xffffff;
    const int64_t body = m_at + 4;
    m_last = !header || (*header >> 31) != 0 || m_file.runsOver(body, size);
    if (!header || m_file.runsOver(body, size)) break;
    m_at = body + static_cast<int64_t>(size);
    if ((*header >> 24 & 0x7f) != static_cast<unsigned>(type)) continue;
    std::vector<std::byte> bytes(size);
    if (!m_file.read(body, reinterpret_cast<char*>(bytes.data()), bytes.size())) break;
    return bytes;
  }
  return std::nullopt;
}

}  // namespace velmor::render
