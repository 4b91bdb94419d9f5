#include "host/render/terminal/messages.h"

#include <algorithm>
#include <array>
#include <cstdio>

namespace velmor::render {

namespace {

/// Names of files come from anywhere: what a terminal would obey is '?'.
void printText(std::string_view text) {
  std::array<char, 512> piece{};
  while (!text.empty()) {
    const size_t count = std::min(text.size(), piece.size());
    std::transform(text.begin(), text.begin() + static_cast<std::ptrdiff_t>(count), piece.begin(),
                   [](char c) { return (c >= 0 && c < ' ') || c == 0x7F ? '?' : c; });
    fwrite(piece.data(), 1, count, stderr);
    text.remove_prefix(count);
  }
}

}  // namespace

void printMessage(std::string_view text) {
  fprintf(stderr, "%s: ", kProgram);
  printText(text);
  fputc('\n', stderr);
}

void printWarning(const std::string& text) {
  printMessage("warning: " + text);
}

void printFolderThatStays(const char* path, const char* reason) {
  fprintf(stderr, "%s: the working folder \"", kProgram);
  printText(path);
  fprintf(stderr, "\" cannot be removed: %s; delete it\n", reason);
}

}  // namespace velmor::render
