#include "disc/ddp/checksum_files.h"

#include <algorithm>
#include <optional>

#include "disc/sheet/line_reader.h"
#include "disc/text/words.h"

namespace velmor::ddp {

namespace {

constexpr std::string_view kCrcHeading = "[CRC32 Checksum]";
constexpr size_t kMd5Digits = 32;
constexpr size_t kCrcDigits = 8;
constexpr int kMostLines = 1000;

bool isHexadecimal(std::string_view text, size_t digits) {
  return text.size() == digits && text.find_first_not_of("0123456789abcdefABCDEF") == text.npos;
}

std::string smallLetters(std::string text) {
  for (char& c : text)
    if (c >= 'A' && c <= 'F') c = static_cast<char>(c - 'A' + 'a');
  return text;
}

/// "<32 digits> *NAME"; some writers leave the asterisk out.
std::optional<ListedSum> md5Line(std::string_view text) {
  const std::string_view digits = disc::takeWord(text);
  if (!isHexadecimal(digits, kMd5Digits) || text.empty()) return std::nullopt;
  if (text.starts_with('*')) text.remove_prefix(1);
  return ListedSum{0, std::string(text), smallLetters(std::string(digits)), ""};
}

/// "NAME=<8 digits>"
std::optional<ListedSum> crcLine(std::string_view text) {
  const size_t sign = text.rfind('=');
  if (sign == std::string_view::npos) return std::nullopt;
  const std::string_view digits = disc::trimmed(text.substr(sign + 1));
  if (!isHexadecimal(digits, kCrcDigits)) return std::nullopt;
  return ListedSum{0, std::string(disc::trimmed(text.substr(0, sign))), "",
                   disc::upperCase(digits)};
}

}  // namespace

std::string md5List(const std::vector<NamedDigests>& files) {
  std::string text;
  for (const NamedDigests& file : files) text += file.digests.md5 + " *" + file.name + '\n';
  return text;
}

std::string crcList(const std::vector<NamedDigests>& files) {
  std::string text = std::string(kCrcHeading) + '\n';
  for (const NamedDigests& file : files) text += file.name + '=' + file.digests.crc + '\n';
  return text;
}

ReadList readChecksums(std::string_view text) {
  ReadList list;
  disc::LineReader lines(text);
  while (const auto line = lines.next()) {
    if (line->number > kMostLines) break;
    const std::string_view words = disc::trimmed(line->text);
    if (words.empty() || words.front() == '[' || words.front() == ';' || words.front() == '#')
      continue;
    auto sum = md5Line(words);
    if (!sum) sum = crcLine(words);
    if (!sum) {
      list.strange_lines.push_back(line->number);
      continue;
    }
    sum->line = line->number;
    list.sums.push_back(std::move(*sum));
  }
  return list;
}

}  // namespace velmor::ddp
