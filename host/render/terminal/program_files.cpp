#include "host/render/terminal/program_files.h"

#include <filesystem>

namespace velmor::render {

std::string libraryOfProgram(const std::string& name) {
  namespace fs = std::filesystem;
  const fs::path programs = fs::read_symlink("/proc/self/exe").parent_path();
  const fs::path beside = programs / name;
  const fs::path installed = (programs / VELMOR_LIBRARIES_FROM_PROGRAMS / name).lexically_normal();
  std::error_code ignored;
  return !fs::exists(beside, ignored) && fs::exists(installed, ignored) ? installed : beside;
}

}  // namespace velmor::render
