// How a page looks: on a screen, light and dark, wide and narrow, and on paper.
#pragma once

namespace velmor::page {

extern const char* const kStyle;

}  // namespace velmor::page
