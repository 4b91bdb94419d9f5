#include "ddp/check/set_files.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <system_error>
#include <utility>
#include <vector>

#include "disc/ddp/set_layout.h"
#include "disc/ddp/stream_map.h"
#include "disc/files/read_at.h"
#include "disc/text/phrases.h"

namespace velmor::ddp {

namespace {

constexpr size_t kBytesAtOnce = size_t{128} << 10;

}  // namespace

SetFile::~SetFile() {
  if (m_descriptor >= 0) ::close(m_descriptor);
}

SetFile::SetFile(SetFile&& other) noexcept
    : m_descriptor(std::exchange(other.m_descriptor, -1)), m_bytes(other.m_bytes) {}

size_t SetFile::read(int64_t offset, void* to, size_t count) const {
  return disc::readAt(m_descriptor, offset, to, count);
}

SetFolder::SetFolder(const std::filesystem::path& path)
    : m_path(path), m_descriptor(::open(path.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC)) {
  if (m_descriptor < 0)
    throw Failure("the folder " + disc::inQuotes(path.string()) +
                  " cannot be opened: " + std::generic_category().message(errno) +
                  "; name the folder that holds DDPID and DDPMS");
}

SetFolder::~SetFolder() {
  ::close(m_descriptor);
}

OpenedFile SetFolder::open(const std::string& name) const {
  if (!isPlainName(name)) return {std::nullopt, false, "is no name of a file in the set's folder"};
  // Not blocking: a pipe in a file's place must not stop the check.
  const int descriptor = ::openat(m_descriptor, name.c_str(),
                                  O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY | O_CLOEXEC);
  if (descriptor < 0)
    return {std::nullopt, errno == ENOENT,
            errno == ELOOP ? std::string("is a link, which is not followed")
                           : "cannot be opened: " + std::generic_category().message(errno)};
  struct stat info {};
  const bool known = ::fstat(descriptor, &info) == 0;
  SetFile file(descriptor, known ? info.st_size : 0);
  if (!known || !S_ISREG(info.st_mode)) return {std::nullopt, false, "is no regular file"};
  return {std::move(file), false, ""};
}

bool isPlainName(const std::string& name) {
  const auto plain = [](char c) { return c >= ' ' && c <= '~' && c != '/' && c != '\\'; };
  return !name.empty() && name != "." && name != ".." &&
         std::all_of(name.begin(), name.end(), plain);
}

std::optional<std::string> wholeDescription(const SetFile& file) {
  if (file.bytes() > static_cast<int64_t>(kLongestDescription)) return std::nullopt;
  std::string bytes(static_cast<size_t>(file.bytes()), '\0');
  if (file.read(0, bytes.data(), bytes.size()) != bytes.size()) return std::nullopt;
  return bytes;
}

std::optional<DigestTexts> digestsOf(const SetFile& file, const ReadBytes& progress) {
  Digests digests;
  std::vector<char> buffer(kBytesAtOnce);
  for (int64_t done = 0; done < file.bytes();) {
    const auto now = static_cast<size_t>(
        std::min<int64_t>(file.bytes() - done, static_cast<int64_t>(buffer.size())));
    if (file.read(done, buffer.data(), now) != now) return std::nullopt;
    digests.add(buffer.data(), now);
    done += static_cast<int64_t>(now);
    progress(done);
  }
  return digests.finish();
}

std::set<std::string> namesOfSet(const std::filesystem::path& folder) {
  std::set<std::string> names{kIdentifierFile, kMapFile, kTextFile, kPqFile,
                              kAudioFile,      kMd5File, kCrcFile};
  std::error_code error;
  if (!std::filesystem::is_directory(folder, error)) return names;
  const OpenedFile map = SetFolder(folder).open(kMapFile);
  const auto bytes = map.file ? wholeDescription(*map.file) : std::nullopt;
  for (size_t at = 0; bytes && at + kMapPacketBytes <= bytes->size(); at += kMapPacketBytes) {
    const StreamPacket stream = readStream(std::string_view(*bytes).substr(at, kMapPacketBytes));
    if (stream.mark == kMapMark && isPlainName(stream.file)) names.insert(stream.file);
  }
  return names;
}

}  // namespace velmor::ddp
