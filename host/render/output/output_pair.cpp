#include "host/render/output/output_pair.h"

#include <fcntl.h>
#include <strings.h>
#include <sys/file.h>
#include <unistd.h>

#include <deque>
#include <fstream>
#include <system_error>
#include <utility>

#include "disc/failure.h"
#include "disc/text/line_of_text.h"
#include "disc/text/phrases.h"
#include "disc/text/utf8.h"

namespace velmor::render {

namespace fs = std::filesystem;

namespace {

constexpr size_t kLongestName = 200;  // bytes; leaves room below the file systems' 255

fs::path sheetPath(const std::string& output) {
  const bool has_ending =
      output.size() > 4 && strcasecmp(output.c_str() + output.size() - 4, ".cue") == 0;
  return has_ending ? output : output + ".cue";
}

fs::path portablePath(fs::path sheet) {
  return sheet.replace_extension(".portable.cue");
}

std::string quotedPath(const fs::path& path) {
  return disc::inQuotes(path.string());
}

/// Whether another program holds the file under a lock.
bool isHeld(const fs::path& path) {
  const int fd = open(path.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
  if (fd < 0) return false;
  const bool held = flock(fd, LOCK_EX | LOCK_NB) != 0 && errno == EWOULDBLOCK;
  close(fd);
  return held;
}

bool sameFile(const fs::path& a, const fs::path& b) {
  std::error_code error;
  return fs::equivalent(a, b, error) && !error;
}

Failure cannotPlace(const fs::path& target, const std::error_code& error) {
  return Failure("the finished disc cannot be put in its place, " + quotedPath(target) + ": " +
                 error.message());
}

}  // namespace

OutputPair::OutputPair(const std::string& output, bool force,
                       const std::vector<std::string>& inputs, bool portable)
    : m_sheet(sheetPath(output)), m_force(force) {
  nameInUtf8();
  m_image = m_sheet;
  m_image.replace_extension(".bin");
  if (portable) m_portable = portablePath(m_sheet);
  checkName();
  checkTargets(inputs);
  const fs::path parent = m_sheet.has_parent_path() ? m_sheet.parent_path() : fs::path(".");
  for (std::string& left : WorkingFolder::removeAbandoned(parent)) {
    m_warnings.push_back(std::move(left));
  }
  m_folder.emplace(parent);
}

/// The sheet names its image, and its other texts are UTF-8: readers take a sheet in one encoding.
void OutputPair::nameInUtf8() {
  const std::string name = m_sheet.filename().string();
  if (disc::isUtf8(name)) return;
  m_sheet.replace_filename(disc::asLineOfText(name));
  m_warnings.push_back("the output's name is no UTF-8 and becomes " + quotedPath(m_sheet) +
                       ", as read as Windows-1252; look whether it is right");
}

void OutputPair::checkName() const {
  const std::string name = m_sheet.filename().string();
  for (const char c : name) {
    const bool control = static_cast<unsigned char>(c) < 0x20;
    if (c != '"' && c != '\\' && !control) continue;
    throw Failure(std::string("the output's name holds a ") +
                  (control    ? "line break or control character"
                   : c == '"' ? "\""
                              : "backslash") +
                  ", which a cue sheet cannot hold; choose another with -o");
  }
  if (name.size() <= 4 || name.size() > kLongestName) {
    throw Failure("the output " + quotedPath(m_sheet) +
                  " has no usable file name; give one like album.cue with -o");
  }
}

std::vector<fs::path> OutputPair::targets() const {
  std::vector<fs::path> all{m_sheet, m_image};
  if (!m_portable.empty()) all.push_back(m_portable);
  return all;
}

void OutputPair::checkTargets(const std::vector<std::string>& inputs) const {
  const fs::path parent = m_sheet.has_parent_path() ? m_sheet.parent_path() : fs::path(".");
  std::error_code error;
  const fs::file_type kind = fs::status(parent, error).type();
  if (kind == fs::file_type::none) throw fs::filesystem_error("no look at a folder", parent, error);
  if (kind != fs::file_type::directory) {
    throw Failure("there is no folder " + quotedPath(parent) +
                  " to write to; make it, or choose another with -o");
  }
  for (const fs::path& target : targets()) {
    for (const std::string& input : inputs) {
      if (sameFile(target, input)) {
        throw Failure("the output " + quotedPath(target) +
                      " is one of the inputs and would be overwritten; choose another with -o");
      }
    }
  }
  checkOld();
}

void OutputPair::checkOld() const {
  for (const fs::path& target : targets()) {
    std::error_code error;
    if (!fs::exists(fs::symlink_status(target, error))) continue;
    if (fs::is_directory(target, error)) {
      throw Failure("the output " + quotedPath(target) + " is a folder; choose another with -o");
    }
    if (fs::is_other(target, error)) {
      throw Failure("the output " + quotedPath(target) +
                    " is no regular file; choose another with -o");
    }
    if (!m_force) {
      throw Failure(quotedPath(target) +
                    " exists already; --force replaces it, -o chooses another place");
    }
    if (isHeld(target)) {
      throw Failure(quotedPath(target) +
                    " is in use by another program; wait for it, or choose another with -o");
    }
  }
}

std::string OutputPair::olderPortableSheet() const {
  if (!m_portable.empty()) return {};
  const fs::path older = portablePath(m_sheet);
  std::error_code error;
  if (!fs::is_regular_file(older, error)) return {};
  std::ifstream file(older);
  const std::string image_line = "FILE \"" + m_image.filename().string() + "\"";
  for (std::string line; std::getline(file, line);) {
    if (line.rfind(image_line, 0) == 0) return older.string();
  }
  return {};
}

/// Where old files had to be left that could not be put back; empty when all is as it was.
std::string OutputPair::takeBack(std::deque<disc::Placement>& placed) noexcept {
  return disc::takeBack(placed) ? std::string() : m_folder->leave();
}

void OutputPair::commit() {
  checkOld();  // again, since another program may have written there during the render
  const fs::path old_folder = m_folder->replaced();
  std::error_code error;
  if (!fs::create_directory(old_folder, error)) throw cannotPlace(m_sheet, error);
  std::vector<std::pair<fs::path, fs::path>> files = {{workingImage(), m_image},
                                                      {workingSheet(), m_sheet}};
  const bool has_portable = !m_portable.empty() && fs::exists(workingPortableSheet());
  if (has_portable) files.emplace_back(workingPortableSheet(), m_portable);
  std::deque<disc::Placement> placed;
  try {
    for (const auto& [made, target] : files) {
      placed.emplace_back(made, target, old_folder / target.filename(), m_force);
    }
  } catch (const fs::filesystem_error& refusal) {
    // Before anything else, since a sentence takes memory, which may have run out.
    const std::string kept = takeBack(placed);
    const Failure failure = cannotPlace(refusal.path1(), refusal.code());
    if (kept.empty()) throw failure;
    throw Failure(std::string(failure.what()) + "; the old files are kept in " +
                  quotedPath(old_folder));
  } catch (...) {
    takeBack(placed);
    throw;
  }
  if (!m_portable.empty() && !has_portable) fs::remove(m_portable, error);
}

bool OutputPair::commitAndKeepWorkingNames() {
  std::error_code error;
  const fs::path trial = m_folder->files() / "names";
  fs::create_directory_symlink(".", trial, error);
  if (error) return false;
  commit();
  m_folder->nameParent();
  return true;
}

}  // namespace velmor::render
