#include "host/render/module/host_callbacks.h"

#include <cassert>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <string>

#include "disc/units/disc_time.h"
#include "host/render/options/settings_file.h"

namespace velmor::render {

namespace {

const HostProject* g_project = nullptr;
std::optional<int> g_write_failure;
int g_asked = 0;

HWND mainWindow() {
  return nullptr;
}

const char* exePath() {
  static const std::string kPath =
      std::filesystem::read_symlink("/proc/self/exe").parent_path().string();
  return kPath.c_str();
}

const char* iniFile() {
  static const std::string kPath = settingsFilePath();
  return kPath.c_str();
}

void formatTime(double seconds, char* buf, int buf_size) {
  if (buf && buf_size > 0) {
    snprintf(buf, static_cast<size_t>(buf_size), "%s", disc::clockTime(seconds).c_str());
  }
}

int enumMarkers(int idx, bool* isrgn, double* pos, double* rgnend, const char** name, int* number) {
  if (!g_project || idx < 0 || idx >= static_cast<int>(g_project->marks.size())) return 0;
  const Mark& mark = g_project->marks[static_cast<size_t>(idx)];
  if (isrgn) *isrgn = mark.end.has_value();
  if (pos) *pos = mark.start;
  if (rgnend) *rgnend = mark.end.value_or(mark.start);
  if (name) *name = mark.name.c_str();
  if (number) *number = idx + 1;
  return idx + 1;
}

const char* enumMetadata(int idx, const char** key) {
  if (!g_project || idx < 0 || idx >= static_cast<int>(g_project->metadata.size())) return nullptr;
  const auto& [name, value] = g_project->metadata[static_cast<size_t>(idx)];
  if (key) *key = name.c_str();
  return value.c_str();
}

void diskCounters(int /*read*/, int write) {
  if (write < 0 && !g_write_failure) g_write_failure = write;
}

template <class Fn>
void* address(Fn* function) {
  return reinterpret_cast<void*>(function);
}

}  // namespace

void openProject(const HostProject& project) {
  g_project = &project;
  g_write_failure.reset();
}

void* hostFunction(const char* name) {
  assert(name);
  ++g_asked;
  const struct {
    const char* name;
    void* function;
  } functions[] = {
      {"GetMainHwnd", address(mainWindow)},
      {"GetExePath", address(exePath)},
      {"get_ini_file", address(iniFile)},
      {"format_timestr", address(formatTime)},
      {"EnumProjectMarkers", address(enumMarkers)},
      {"EnumCurrentSinkMetadata", address(enumMetadata)},
      {"update_disk_counters", address(diskCounters)},
  };
  for (const auto& known : functions) {
    if (strcmp(known.name, name) == 0) return known.function;
  }
  return nullptr;
}

int hostFunctionsAskedFor() {
  return g_asked;
}

std::optional<int> writeFailure() {
  return g_write_failure;
}

}  // namespace velmor::render
