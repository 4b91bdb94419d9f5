#include "host/render/album/mark_names.h"

#include <strings.h>

#include <algorithm>
#include <array>

namespace velmor::render {

bool isTag(const std::string& name) {
  constexpr std::array<const char*, 3> kPrefixes = {"PERF=", "WRIT=", "ISRC="};
  return std::any_of(kPrefixes.begin(), kPrefixes.end(), [&](const char* prefix) {
    return strncasecmp(name.c_str(), prefix, kTagLength) == 0;
  });
}

bool namesTrack(const std::string& name, bool hash_only) {
  return hash_only ? !name.empty() && name.front() == '#' : !isTag(name);
}

std::string trackTitle(const std::string& name, bool hash_only) {
  std::string title = hash_only && !name.empty() ? name.substr(1) : name;
  std::replace(title.begin(), title.end(), '"', '\'');  // as the module writes it
  return title;
}

}  // namespace velmor::render
