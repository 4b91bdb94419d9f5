// The names that data bases of discs know a disc by.
#pragma once

#include <optional>
#include <string>

#include "page/album/page_disc.h"

namespace velmor::page {

struct DiscIds {
  std::string musicbrainz, freedb;
};

/// From where the tracks start and the disc ends. Nothing where that is not known of every track,
/// or where they are not all audio.
std::optional<DiscIds> discIds(const PageDisc& disc);

}  // namespace velmor::page
