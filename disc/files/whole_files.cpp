#include "disc/files/whole_files.h"

#include <deque>

#include "disc/files/placement.h"
#include "disc/text/phrases.h"

namespace velmor::disc {

namespace fs = std::filesystem;

void placeAll(const std::list<Draft>& drafts, bool force) {
  std::deque<Placement> placed;
  try {
    for (const Draft& draft : drafts) {
      placed.emplace_back(draft.path(), draft.target(), draft.path().string() + ".old", force);
    }
  } catch (...) {
    takeBack(placed);
    throw;
  }
  for (Placement& placement : placed) placement.forgetBackup();
}

Failure notWritten(const fs::filesystem_error& error) {
  return Failure(inQuotes(error.path1().string()) +
                 " cannot be written: " + error.code().message() + "; choose another place");
}

void writeWhole(const std::vector<TextFile>& files, bool force) {
  try {
    std::list<Draft> drafts;
    for (const TextFile& file : files) {
      Draft& draft = drafts.emplace_back(file.path);
      draft.write(file.text);
      if (file.more) file.more([&draft](std::string_view bytes) { draft.write(bytes); });
      draft.sync();
    }
    placeAll(drafts, force);
  } catch (const fs::filesystem_error& error) {
    throw notWritten(error);
  }
}

void writeWhole(const fs::path& path, const std::string& text, bool force) {
  writeWhole({{path, text}}, force);
}

}  // namespace velmor::disc
