// The two lists of check sums that lie beside a set: CHECKSUM.MD5 and CHECKSUM.TXT.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "disc/ddp/digests.h"

namespace velmor::ddp {

struct NamedDigests {
  std::string name;
  DigestTexts digests;
};

/// In the order of `files`.
std::string md5List(const std::vector<NamedDigests>& files);
std::string crcList(const std::vector<NamedDigests>& files);

/// One line of a list, as it was found.
struct ListedSum {
  int line = 0;  ///< 1 and up
  std::string name;
  std::string md5, crc;  ///< one of them, in the case of `DigestTexts`; the other is empty
};

struct ReadList {
  std::vector<ListedSum> sums;
  std::vector<int> strange_lines;  ///< that are neither
};

/// Reads a list of either form, whatever its file is called; at most 1000 lines of it.
ReadList readChecksums(std::string_view text);

}  // namespace velmor::ddp
