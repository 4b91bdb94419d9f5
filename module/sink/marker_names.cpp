#include "module/sink/marker_names.h"

#include <cassert>

#include "module/support/ascii_case.h"

namespace {

constexpr MarkerTag kTags[] = {
    {"PERF=", "PERFORMER"},
    {"WRIT=", "SONGWRITER"},
    {"ISRC=", "ISRC"},
};

}  // namespace

const MarkerTag* tagOf(const char* name) {
  assert(name);
  for (const MarkerTag& tag : kTags) {
    if (compareIgnoringCase(name, tag.prefix, kTagPrefixLength) == 0) return &tag;
  }
  return nullptr;
}

bool namesATrack(const char* name, bool hash_only) {
  if (hash_only) return name && name[0] == '#';
  return !name || !tagOf(name);
}

const char* titleOf(const char* name, bool hash_only) {
  if (!name) return "";
  assert(!hash_only || name[0] == '#');
  return hash_only ? name + 1 : name;
}
