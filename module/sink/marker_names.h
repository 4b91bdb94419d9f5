// What a marker's name says: a track's title, or a tag of the track it lies in.
#pragma once

/// The tags that a marker's name may carry, by its prefix.
struct MarkerTag {
  const char* prefix;  ///< five characters, compared without regard to ASCII case
  const char* key;     ///< the cue sheet's word for it
};
inline constexpr int kTagPrefixLength = 5;

/// The tag that `name` (not null) carries, or null when it carries none.
const MarkerTag* tagOf(const char* name);

/// Whether a marker of this name (may be null) can begin a track. With `hash_only` only names that
/// begin with "#" do; a name such as #PERF=x is then a title, since the tag prefixes are looked for
/// at the name's start.
bool namesATrack(const char* name, bool hash_only);

/// The title that such a marker gives its track: with `hash_only` the name without its "#", and
/// nothing for a null name.
const char* titleOf(const char* name, bool hash_only);
