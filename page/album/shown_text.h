// Texts from elsewhere as the page shows them.
#pragma once

#include <string>
#include <string_view>

namespace velmor::page {

/// `bytes` as one line of UTF-8, cut where no disc's text goes on.
std::string shownText(std::string_view bytes);

}  // namespace velmor::page
