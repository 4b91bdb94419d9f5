// A whole page.
#pragma once

#include <string>

#include "page/drawing/page_view.h"

namespace velmor::page {

/// One self-contained file: it loads nothing and runs no script.
std::string documentText(const PageView& view);

}  // namespace velmor::page
