// What the module makes of a marker's name.
//
// A host never links the module, so this repeats its rule on purpose; the rule's home is
// module/sink/marker_names.cpp.
#pragma once

#include <cstddef>
#include <string>

namespace velmor::render {

/// Of what a tag begins with: its value follows.
inline constexpr size_t kTagLength = 5;

/// Whether the name is a tag of the track it lies in: "PERF=", "WRIT=" or "ISRC=", in any case.
bool isTag(const std::string& name);

/// Whether a marker of that name can begin a track.
bool namesTrack(const std::string& name, bool hash_only);

/// The title such a track gets.
std::string trackTitle(const std::string& name, bool hash_only);

}  // namespace velmor::render
