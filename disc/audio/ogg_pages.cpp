#include "disc/audio/ogg_pages.h"

#include <algorithm>
#include <string_view>
#include <vector>

namespace velmor::disc {
namespace {

constexpr size_t kHeaderSize = 27;
constexpr std::string_view kCapture("OggS\0", 5);  // with the only version there is
constexpr size_t kFlagsAt = 5;
constexpr int64_t kStreamAt = 14;
constexpr size_t kCountAt = 26;

}  // namespace

std::optional<int64_t> OggPages::find(int64_t from) const {
  if (m_file.has(from, kCapture)) return from;
  constexpr int64_t kWindow = 65536;
  const auto overlap = static_cast<int64_t>(kCapture.size()) - 1;
  std::vector<char> window;
  for (int64_t at = from; at < m_file.size(); at += kWindow - overlap) {
    window.resize(static_cast<size_t>(std::min(kWindow, m_file.size() - at)));
    if (!m_file.read(at, window.data(), window.size())) return std::nullopt;
    const size_t found = std::string_view(window.data(), window.size()).find(kCapture);
    if (found != std::string_view::npos) return at + static_cast<int64_t>(found);
  }
  return std::nullopt;
}

std::optional<OggPage> OggPages::next() {
  const std::optional<int64_t> at = find(m_at);
  if (!at) return std::nullopt;
  OggPage page;
  page.end = m_at = m_file.size() + 1;  // unless the header is whole
  std::array<char, kHeaderSize> header{};
  if (!m_file.read(*at, header.data(), header.size())) return page;
  const auto flags = static_cast<unsigned char>(header[kFlagsAt]);
  page.continues = (flags & 1U) != 0;
  page.begins = (flags & 2U) != 0;
  page.ends = (flags & 4U) != 0;
  page.stream = static_cast<uint32_t>(m_file.little(*at + kStreamAt, 4).value_or(0));
  const size_t count = static_cast<unsigned char>(header[kCountAt]);
  const int64_t lengths = *at + static_cast<int64_t>(kHeaderSize);
  if (!m_file.read(lengths, reinterpret_cast<char*>(page.segments.data()), count)) return page;
  page.segment_count = count;
  page.body = lengths + static_cast<int64_t>(count);
  page.end = page.body;
  for (size_t i = 0; i < count; ++i) page.end += page.segments[i];
  m_at = page.end;
  return page;
}

}  // namespace velmor::disc
