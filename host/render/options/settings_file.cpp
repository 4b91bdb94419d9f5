#include "host/render/options/settings_file.h"

#include <cstdlib>
#include <filesystem>

namespace velmor::render {

std::string settingsFilePath() {
  const char* const config = getenv("XDG_CONFIG_HOME");
  const char* const home = getenv("HOME");
  const std::filesystem::path base = config && *config ? std::filesystem::path(config)
                                     : home && *home   ? std::filesystem::path(home) / ".config"
                                                       : std::filesystem::path(".");
  return (base / "velmor" / "velmor-render.ini").string();
}

}  // namespace velmor::render
