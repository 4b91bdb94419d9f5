#include <algorithm>
#include <cerrno>
#include <climits>
#include <cstdlib>
#include <cstring>

#include "host/windowing/functions/layer_functions.h"
#include "host/windowing/ini/ini_file.h"
#include "host/windowing/win32/bounded_text.h"

namespace velmor::windowing::functions {
namespace {

std::optional<std::string> readValue(const char* section, const char* key, const char* file) {
  const auto ini = file == nullptr ? std::nullopt : IniFile::load(file);
  return ini ? ini->value(section, key) : std::nullopt;
}

/// A list of names, each with its zero, and another zero at the end, cut to `size` bytes.
UINT copyNames(const std::vector<std::string>& names, char* buffer, UINT size) {
  std::string all;
  for (const std::string& name : names) {
    all.append(name).push_back('\0');
  }
  if (size < 2) {
    return static_cast<UINT>(copyBounded("", buffer, size));
  }
  const size_t length = std::min(all.size(), static_cast<size_t>(size) - 1);
  std::memcpy(buffer, all.data(), length);
  buffer[length] = '\0';
  if (length < all.size()) {  // cut: the last name's zero must still be there
    buffer[length - 1] = '\0';
    return size - 2;
  }
  return static_cast<UINT>(length);
}

/// Quotation marks around a value, which keep its blanks, are not part of it.
std::string_view unquoted(std::string_view value) {
  const bool quoted = value.size() >= 2 && value.front() == value.back() &&
                      (value.front() == '"' || value.front() == '\'');
  return quoted ? value.substr(1, value.size() - 2) : value;
}

bool change(IniFile& ini, const char* section, const char* key, const char* value) {
  if (key == nullptr) {
    ini.eraseSection(section);
    return true;
  }
  if (value == nullptr) {
    ini.erase(section, key);
    return true;
  }
  return ini.set(section, key, value);
}

}  // namespace

UINT GetPrivateProfileString(const char* section, const char* key, const char* fallback,
                             char* buffer, UINT size, const char* file) {
  if (buffer == nullptr || size == 0) {
    return 0;
  }
  if (section == nullptr || key == nullptr) {
    const auto ini = IniFile::load(file == nullptr ? "" : file).value_or(IniFile());
    return copyNames(section == nullptr ? ini.sections() : ini.keys(section), buffer, size);
  }
  const auto value = readValue(section, key, file);
  const std::string_view text = value      ? unquoted(*value)
                                : fallback ? std::string_view(fallback)
                                           : std::string_view();
  return static_cast<UINT>(copyBounded(text, buffer, size));
}

int GetPrivateProfileInt(const char* section, const char* key, int fallback, const char* file) {
  if (section == nullptr || key == nullptr) {
    return fallback;
  }
  const auto value = readValue(section, key, file);
  if (!value || unquoted(*value).empty()) {
    return fallback;
  }
  const std::string text(unquoted(*value));
  return static_cast<int>(std::clamp(std::strtol(text.c_str(), nullptr, 10),
                                     static_cast<long>(INT_MIN), static_cast<long>(INT_MAX)));
}

BOOL WritePrivateProfileString(const char* section, const char* key, const char* value,
                               const char* file) {
  if (section == nullptr || file == nullptr) {
    return 0;
  }
  auto ini = IniFile::load(file);
  if (!ini) {
    return 0;
  }
  const std::string before = ini->text();
  if (!change(*ini, section, key, value)) {
    return 0;
  }
  return ini->text() == before || ini->store(file) ? 1 : 0;
}

}  // namespace velmor::windowing::functions
