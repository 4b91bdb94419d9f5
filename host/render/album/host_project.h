// The project as the module sees it.
#pragma once

#include <string>
#include <utility>
#include <vector>

#include "host/render/input/marks/mark.h"

namespace velmor::render {

/// What the module can ask for. Positions are project seconds; the render starts at 0.
struct HostProject {
  std::vector<Mark> marks;                                    ///< ascending by start
  std::vector<std::pair<std::string, std::string>> metadata;  ///< "CUE:DISC_TITLE" and its text, …
};

}  // namespace velmor::render
