#include "host/render/terminal/messages.h"

#include <cstdio>

namespace velmor::render {

void printMessage(std::string_view text) {
  fprintf(stderr, "%s: %.*s\n", kProgram, static_cast<int>(text.size()), text.data());
}

void printWarning(const std::string& text) {
  printMessage("warning: " + text);
}

void printFolderThatStays(const char* path, const char* reason) {
  fprintf(stderr, "%s: the working folder \"%s\" cannot be removed: %s; delete it\n", kProgram,
          path, reason);
}

}  // namespace velmor::render
