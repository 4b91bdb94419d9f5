#include "tests/fake_host/standard_error.h"

#include <gtest/gtest.h>
#include <sys/mman.h>
#include <unistd.h>

#include <cstdio>
#include <sstream>

namespace fake_host {

StandardErrorCapture::StandardErrorCapture() {
  std::fflush(stderr);
  m_saved = dup(2);
  m_file = memfd_create("stderr", MFD_CLOEXEC);
  if (m_saved < 0 || m_file < 0 || dup2(m_file, 2) < 0) ADD_FAILURE() << "cannot divert stderr";
}

StandardErrorCapture::~StandardErrorCapture() {
  restore();
  if (m_file >= 0) close(m_file);
}

std::vector<std::string> StandardErrorCapture::lines() {
  restore();
  std::string text;
  char piece[4096];
  off_t at = 0;
  for (ssize_t n; (n = pread(m_file, piece, sizeof piece, at)) > 0; at += n) {
    text.append(piece, static_cast<size_t>(n));
  }
  std::vector<std::string> lines;
  std::istringstream in(text);
  for (std::string line; std::getline(in, line);) lines.push_back(line);
  close(m_file);
  m_file = -1;
  return lines;
}

void StandardErrorCapture::restore() {
  if (m_saved < 0) return;
  std::fflush(stderr);
  dup2(m_saved, 2);
  close(m_saved);
  m_saved = -1;
}

}  // namespace fake_host
