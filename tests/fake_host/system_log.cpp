#include "tests/fake_host/system_log.h"

#include <gtest/gtest.h>
#include <syslog.h>

#include <cstdarg>
#include <cstdio>

namespace fake_host {

namespace {

SystemLogCapture* g_current_capture = nullptr;

void keep(const char* format, va_list arguments) {
  if (g_current_capture == nullptr) return;
  char text[1024];
  std::vsnprintf(text, sizeof text, format, arguments);
  std::string line = text;
  if (!line.empty() && line.back() == '\n') line.pop_back();
  g_current_capture->lines.push_back(line);
}

}  // namespace

SystemLogCapture::SystemLogCapture() {
  if (g_current_capture != nullptr) ADD_FAILURE() << "two captures of the system log";
  g_current_capture = this;
}

SystemLogCapture::~SystemLogCapture() {
  g_current_capture = nullptr;
}

}  // namespace fake_host

extern "C" {

void syslog(int, const char* format, ...) {
  va_list arguments;
  va_start(arguments, format);
  fake_host::keep(format, arguments);
  va_end(arguments);
}

void vsyslog(int, const char* format, va_list arguments) {
  fake_host::keep(format, arguments);
}
}
