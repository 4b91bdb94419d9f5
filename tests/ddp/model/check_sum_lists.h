// The lists of check sums that lie beside a set, made a second time.
#pragma once

#include <string>
#include <vector>

namespace ddp_model {

/// CHECKSUM.MD5 as md5sum prints it for these files of the folder.
std::string md5List(const std::string& folder, const std::vector<std::string>& names);

/// CHECKSUM.TXT for these files of the folder.
std::string crcList(const std::string& folder, const std::vector<std::string>& names);

}  // namespace ddp_model
