#include "host/render/terminal/messages.h"

#include <cstdio>

namespace velmor::render {

void printMessage(const std::string& text) {
  fprintf(stderr, "%s: %s\n", kProgram, text.c_str());
}

void printWarning(const std::string& text) {
  printMessage("warning: " + text);
}

}  // namespace velmor::render
