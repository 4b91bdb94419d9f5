// A track as a small wave, with its first and last two seconds enlarged.
#pragma once

#include <cstddef>
#include <string>

#include "page/drawing/page_view.h"

namespace velmor::page {

/// Three figures; empty for a track that was not measured.
std::string trackDrawing(const PageView& view, size_t track);

}  // namespace velmor::page
