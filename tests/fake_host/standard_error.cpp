#include "tests/fake_host/standard_error.h"

#include <gtest/gtest.h>
#include <sys/mman.h>
#include <unistd.h>

#include <cstdio>
#include <sstream>

namespace fake_host {

StandardErrorCapture::StandardErrorCapture() {
  std::fflush(stderr);
  saved_ = dup(2);
  file_ = memfd_create("stderr", MFD_CLOEXEC);
  if (saved_ < 0 || file_ < 0 || dup2(file_, 2) < 0) ADD_FAILURE() << "cannot divert stderr";
}

StandardErrorCapture::~StandardErrorCapture() {
  Restore();
  if (file_ >= 0) close(file_);
}

std::vector<std::string> StandardErrorCapture::Lines() {
  Restore();
  std::string text;
  char piece[4096];
  off_t at = 0;
  for (ssize_t n; (n = pread(file_, piece, sizeof piece, at)) > 0; at += n) {
    text.append(piece, static_cast<size_t>(n));
  }
  std::vector<std::string> lines;
  std::istringstream in(text);
  for (std::string line; std::getline(in, line);) lines.push_back(line);
  close(file_);
  file_ = -1;
  return lines;
}

void StandardErrorCapture::Restore() {
  if (saved_ < 0) return;
  std::fflush(stderr);
  dup2(saved_, 2);
  close(saved_);
  saved_ = -1;
}

}  // namespace fake_host
