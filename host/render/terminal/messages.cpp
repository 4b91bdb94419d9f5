#include "host/render/terminal/messages.h"

#include <array>
#include <cstddef>
#include <cstdio>

namespace velmor::render {

namespace {

/// A line of standard error, put together without taking memory and written at once: where nothing
/// more can be written none of it appears, rather than its begin. A longer one comes in pieces.
class ErrorLine {
 public:
  ErrorLine() { add(kProgram); }
  ~ErrorLine() {
    put('\n');
    write();
  }
  ErrorLine(const ErrorLine&) = delete;
  ErrorLine& operator=(const ErrorLine&) = delete;

  /// Names of files come from anywhere: what a terminal would obey is '?'.
  ErrorLine& add(std::string_view text) {
    for (const char c : text) put((c >= 0 && c < ' ') || c == 0x7F ? '?' : c);
    return *this;
  }

 private:
  void put(char c) {
    if (m_used == m_piece.size()) write();
    m_piece[m_used++] = c;
  }
  void write() {
    fwrite(m_piece.data(), 1, m_used, stderr);
    m_used = 0;
  }

  std::array<char, 4096> m_piece{};
  size_t m_used = 0;
};

}  // namespace

void printMessage(std::string_view text) {
  ErrorLine().add(": ").add(text);
}

void printWarning(const std::string& text) {
  printMessage("warning: " + text);
}

void printFolderThatStays(const char* path, const char* reason) {
  ErrorLine()
      .add(": the working folder \"")
      .add(path)
      .add("\" cannot be removed: ")
      .add(reason)
      .add("; delete it");
}

}  // namespace velmor::render
