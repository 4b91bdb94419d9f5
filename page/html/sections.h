// The parts of a page, each a piece of HTML; empty where there is nothing to show.
#pragma once

#include <string>

#include "page/drawing/page_view.h"

namespace velmor::page {

/// Title, verdict, length, room, codes and check sums.
std::string headSection(const PageView& view);
/// The wave of the whole disc.
std::string discSection(const PageView& view);
/// Tracks and indices with their times and codes. Each track has the id `track-N`, N counted
/// from 1.
std::string pqSection(const PageView& view);
/// What was measured of each track.
std::string levelsSection(const PageView& view);
/// The waves of the tracks, with their starts and ends.
std::string edgesSection(const PageView& view);
/// What the checker found. Each finding has the id `finding-N`.
std::string findingsSection(const PageView& view);
/// What the programs that read cue sheets make of this one.
std::string readersSection(const PageView& view);
/// How the numbers are meant.
std::string notesSection(const PageView& view);

}  // namespace velmor::page
