// A hidden folder of a running process, and those that killed ones have left behind.
#pragma once

#include <cstdint>
#include <filesystem>
#include <functional>
#include <string>
#include <system_error>
#include <utility>
#include <vector>

#include "disc/failure.h"

namespace velmor::disc {

/// For when a folder cannot be made in `parent`, with the system's `error`; `advice` ends the
/// message.
Failure cannotWriteTo(const std::filesystem::path& parent, int error, const char* advice);

/// A fresh folder of which a later process can tell whether it is somebody's: this one holds a lock
/// on it for as long as the object, and so the process, lives. It is not removed with the object.
class HeldFolder {
 public:
  /// Makes it in `parent`; its name is `name_begin` and six random letters. Throws `Failure` when
  /// nothing can be written there; `advice` ends its message.
  HeldFolder(const std::filesystem::path& parent, const std::string& name_begin,
             const char* advice);
  ~HeldFolder();
  HeldFolder(const HeldFolder&) = delete;
  HeldFolder& operator=(const HeldFolder&) = delete;

  const std::string& path() const { return m_path; }
  /// The path, which the object forgets; takes no memory.
  std::string takePath() noexcept { return std::move(m_path); }

 private:
  bool holdsIt() const;

  std::string m_path;
  int m_held = -1;  ///< descriptor with the lock
};

/// Calls `found` with each folder of such a name in `parent` that belongs to this user and that no
/// process holds, while it is held here.
void forEachAbandoned(const std::filesystem::path& parent, const std::string& name_begin,
                      const std::function<void(const std::filesystem::path&)>& found);

/// Removes the folder with all that is in it, without taking memory. False, with `errno` set, when
/// something stays.
bool removeWhole(const char* folder) noexcept;

/// What lies in `folder`; nothing, with `error` set, where it cannot be read.
std::vector<std::filesystem::path> entriesOf(const std::filesystem::path& folder,
                                             std::error_code& error);
/// The bytes of the files that lie in `folder` itself.
int64_t bytesIn(const std::filesystem::path& folder);

/// Removes `folder`, which a killed process has left, and answers the clause about it, for a
/// message. `bytes` is what it held.
std::string removeAbandoned(const std::filesystem::path& folder, int64_t bytes);
/// The clause's beginning.
std::string leftByKilledRun(const std::filesystem::path& folder);

}  // namespace velmor::disc
