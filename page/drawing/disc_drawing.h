// The disc as one wave, with its tracks, pauses and findings.
#pragma once

#include <string>

#include "page/drawing/page_view.h"

namespace velmor::page {

/// A figure; empty where there is no audio to draw. A finding that has a place has a mark there
/// with the id `mark-N`, N counted from 1; what is drawn of a track leads to `track-N`.
std::string discDrawing(const PageView& view);

}  // namespace velmor::page
