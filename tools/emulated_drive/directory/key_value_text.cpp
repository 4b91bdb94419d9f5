#include "tools/emulated_drive/directory/key_value_text.h"

#include <unistd.h>

#include <charconv>
#include <fstream>

#include "tools/emulated_drive/directory/drive_directory.h"

namespace velmor::emulated_drive {

namespace {

std::string trimmed(const std::string& text) {
  constexpr const char* kBlank = " \t\r";
  const std::size_t first = text.find_first_not_of(kBlank);
  return first == std::string::npos ? std::string()
                                    : text.substr(first, text.find_last_not_of(kBlank) - first + 1);
}

}  // namespace

std::vector<KeyValue> readKeyValues(const std::filesystem::path& file) {
  std::ifstream in(file);
  if (!in) {
    throw DirectoryError(inQuotes(file) + " cannot be read; name a folder of drives");
  }
  std::vector<KeyValue> items;
  std::string line;
  for (int number = 1; std::getline(in, line); ++number) {
    line = trimmed(line);
    if (line.empty() || line.front() == '#') {
      continue;
    }
    const std::string where = "line " + std::to_string(number) + " of " + inQuotes(file);
    const std::size_t equals = line.find('=');
    if (equals == std::string::npos) {
      throw DirectoryError(where + " has no \"=\"; write key = value");
    }
    items.push_back({trimmed(line.substr(0, equals)), trimmed(line.substr(equals + 1)), where});
  }
  return items;
}

void replaceFile(const std::filesystem::path& file, const std::string& text) {
  const std::filesystem::path draft = file.string() + "." + std::to_string(::getpid());
  std::error_code error;
  std::error_code unheard;
  {
    std::ofstream out(draft, std::ios::trunc | std::ios::binary);
    out << text << std::flush;
    if (!out) {
      std::filesystem::remove(draft, unheard);
      throw DirectoryError(inQuotes(draft) +
                           " cannot be written; look at the folder's permissions");
    }
  }
  std::filesystem::rename(draft, file, error);
  if (error) {
    std::filesystem::remove(draft, unheard);
    throw DirectoryError(inQuotes(file) + " cannot be replaced: " + error.message());
  }
}

void removeFile(const std::filesystem::path& file) {
  std::error_code error;
  std::filesystem::remove(file, error);
  if (error) {
    throw DirectoryError(inQuotes(file) + " cannot be removed: " + error.message());
  }
}

void refuse(const KeyValue& item, const std::string& expected) {
  throw DirectoryError(inQuotes(item.key + " = " + item.value) + " in " + item.where +
                       " is not understood: expected " + expected);
}

int32_t numberOf(const KeyValue& item) {
  int32_t value = 0;
  const char* end = item.value.data() + item.value.size();
  const auto result = std::from_chars(item.value.data(), end, value);
  if (result.ec != std::errc() || result.ptr != end) {
    refuse(item, "a whole number");
  }
  return value;
}

bool switchOf(const KeyValue& item) {
  if (item.value != "yes" && item.value != "no") {
    refuse(item, "yes or no");
  }
  return item.value == "yes";
}

}  // namespace velmor::emulated_drive
