// The files of somebody else's set, opened so that nothing outside its folder is ever read.
#pragma once

#include <cstdint>
#include <filesystem>
#include <functional>
#include <optional>
#include <set>
#include <string>

#include "disc/ddp/digests.h"
#include "disc/failure.h"

namespace velmor::ddp {

/// A longer description is none.
inline constexpr size_t kLongestDescription = size_t{1} << 20;

/// A regular file in the folder of a set. One thread.
class SetFile {
 public:
  SetFile(int descriptor, int64_t bytes) : m_descriptor(descriptor), m_bytes(bytes) {}
  ~SetFile();
  SetFile(SetFile&& other) noexcept;
  SetFile& operator=(SetFile&&) = delete;

  int64_t bytes() const { return m_bytes; }
  /// Reads `count` bytes from `offset` on; returns fewer at the end or at a read error.
  size_t read(int64_t offset, void* to, size_t count) const;

 private:
  int m_descriptor;
  int64_t m_bytes;
};

/// The file, or why there is none to read.
struct OpenedFile {
  std::optional<SetFile> file;
  bool missing = false;  ///< there is nothing of that name
  std::string problem;   ///< a sentence without its full stop, to go behind the file's name
};

class SetFolder {
 public:
  /// Throws `Failure` when `path` is no folder that can be read.
  explicit SetFolder(const std::filesystem::path& path);
  ~SetFolder();
  SetFolder(const SetFolder&) = delete;
  SetFolder& operator=(const SetFolder&) = delete;

  /// A name that leads out of the folder, a link and what is no regular file are problems; none of
  /// them is opened for reading.
  OpenedFile open(const std::string& name) const;
  const std::filesystem::path& path() const { return m_path; }

 private:
  std::filesystem::path m_path;
  int m_descriptor = -1;
};

/// A plain name: printable ASCII without a slash or a backslash, and not "." or "..".
bool isPlainName(const std::string& name);

/// The whole of a file of at most `kLongestDescription` bytes; nothing when it is longer or cannot
/// be read to its end.
std::optional<std::string> wholeDescription(const SetFile& file);

/// Told of the bytes done now and then. May throw, which ends the reading.
using ReadBytes = std::function<void(int64_t bytes)>;
/// The check sums of a file, each byte read once; nothing when it cannot be read to its end.
std::optional<DigestTexts> digestsOf(const SetFile& file, const ReadBytes& progress);

/// The names of the set's files in `folder`: those that every set has, and those that its map
/// names. Any folder will do.
std::set<std::string> namesOfSet(const std::filesystem::path& folder);

}  // namespace velmor::ddp
