#include "check/image/image_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>
#include <system_error>
#include <utility>

#include "disc/units/disc_units.h"

namespace velmor::check {

namespace {

using Bytes = const unsigned char*;

uint32_t little32(Bytes b) {
  return uint32_t{b[0]} | uint32_t{b[1]} << 8 | uint32_t{b[2]} << 16 | uint32_t{b[3]} << 24;
}
uint32_t big32(Bytes b) {
  return uint32_t{b[3]} | uint32_t{b[2]} << 8 | uint32_t{b[1]} << 16 | uint32_t{b[0]} << 24;
}
uint32_t little16(Bytes b) {
  return uint32_t{b[0]} | uint32_t{b[1]} << 8;
}
uint32_t big16(Bytes b) {
  return uint32_t{b[1]} | uint32_t{b[0]} << 8;
}
bool named(Bytes b, const char* name) {
  return std::memcmp(b, name, 4) == 0;
}

/// A container with more chunks than this before its samples is no audio file.
constexpr int kMostChunks = 4096;

}  // namespace

ImageFile::ImageFile(const std::filesystem::path& path, std::string_view type) : m_path(path) {
  // Not blocking: a pipe or a device in the image's place must not stop the check.
  m_descriptor = ::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK);
  struct stat info {};
  if (m_descriptor < 0 || ::fstat(m_descriptor, &info) != 0) {
    m_problem = std::error_code(errno, std::generic_category()).message();
    return;
  }
  if (!S_ISREG(info.st_mode)) {
    m_problem = "it is not a regular file";
    return;
  }
  m_exists = true;
  m_bytes = info.st_size;
  ::posix_fadvise(m_descriptor, 0, 0, POSIX_FADV_SEQUENTIAL);
  locateSamples(type);
}

ImageFile::~ImageFile() {
  if (m_descriptor >= 0) ::close(m_descriptor);
}

ImageFile::ImageFile(ImageFile&& other) noexcept
    : m_path(std::move(other.m_path)),
      m_descriptor(std::exchange(other.m_descriptor, -1)),
      m_exists(other.m_exists),
      m_mislabelled(other.m_mislabelled),
      m_form(other.m_form),
      m_bytes(other.m_bytes),
      m_data_offset(other.m_data_offset),
      m_data_bytes(other.m_data_bytes),
      m_problem(std::move(other.m_problem)) {}

int64_t ImageFile::sectors() const {
  return (m_data_bytes + disc::kBytesPerSector - 1) / disc::kBytesPerSector;
}

void ImageFile::locateSamples(std::string_view type) {
  if (type == "BINARY" || type == "MOTOROLA") {
    m_form = type == "BINARY" ? SampleForm::kLittle : SampleForm::kBig;
    m_data_bytes = m_bytes;
    return;
  }
  if (type == "WAVE") locateInWave();
  if (type == "AIFF") locateInAiff();
  if (!readable() && m_problem.empty())
    m_problem = "only BINARY, MOTOROLA and plain 16-bit 44100 Hz stereo WAVE and AIFF are";
}

void ImageFile::locateInWave() {
  std::array<unsigned char, 16> head{};
  const bool whole = readBytes(0, head.data(), 12) == 12;
  m_mislabelled = !whole || !(named(head.data(), "RIFF") || named(head.data(), "RF64")) ||
                  !named(head.data() + 8, "WAVE");
  if (m_mislabelled) return;
  bool plain = false;
  int64_t at = 12;
  for (int chunk = 0; chunk < kMostChunks; ++chunk) {
    std::array<unsigned char, 24> c{};
    if (readBytes(at, c.data(), c.size()) < 8) {
      m_form = SampleForm::kLittle;  // broken off: none of its samples are there
      return;
    }
    const int64_t size = little32(c.data() + 4);
    if (named(c.data(), "fmt ")) {
      plain = little16(c.data() + 10) == 2 && little32(c.data() + 12) == disc::kSampleRate &&
              little16(c.data() + 20) == disc::kBytesPerFrame &&
              (little16(c.data() + 8) == 1 || little16(c.data() + 8) == 0xFFFE);
    } else if (named(c.data(), "data")) {
      if (!plain) return;
      m_form = SampleForm::kLittle;
      m_data_offset = at + 8;
      m_data_bytes = std::min(size, m_bytes - m_data_offset);
      return;
    }
    at += 8 + size + size % 2;
  }
}

void ImageFile::locateInAiff() {
  std::array<unsigned char, 16> head{};
  const bool whole = readBytes(0, head.data(), 12) == 12;
  m_mislabelled = !whole || !named(head.data(), "FORM") ||
                  !(named(head.data() + 8, "AIFF") || named(head.data() + 8, "AIFC"));
  if (m_mislabelled || !named(head.data() + 8, "AIFF")) return;
  constexpr std::array<unsigned char, 4> k44100 = {0x40, 0x0E, 0xAC, 0x44};
  bool plain = false;
  int64_t at = 12;
  for (int chunk = 0; chunk < kMostChunks; ++chunk) {
    std::array<unsigned char, 26> c{};
    if (readBytes(at, c.data(), c.size()) < 8) {
      m_form = SampleForm::kBig;
      return;
    }
    const int64_t size = big32(c.data() + 4);
    if (named(c.data(), "COMM")) {
      plain = big16(c.data() + 8) == 2 && big16(c.data() + 14) == 16 &&
              std::equal(k44100.begin(), k44100.end(), c.begin() + 16);
    } else if (named(c.data(), "SSND")) {
      if (!plain) return;
      m_form = SampleForm::kBig;
      m_data_offset = std::min(at + 16 + big32(c.data() + 8), m_bytes);
      m_data_bytes = std::clamp<int64_t>(size - 8, 0, m_bytes - m_data_offset);
      return;
    }
    at += 8 + size + size % 2;
  }
}

size_t ImageFile::readBytes(int64_t offset, void* to, size_t bytes) const {
  size_t done = 0;
  while (done < bytes) {
    const ssize_t got = ::pread(m_descriptor, static_cast<char*>(to) + done, bytes - done,
                                offset + static_cast<int64_t>(done));
    if (got < 0 && errno == EINTR) continue;
    if (got <= 0) break;
    done += static_cast<size_t>(got);
  }
  return done;
}

size_t ImageFile::readFrames(int64_t frame, int16_t* samples, size_t frames) const {
  if (!readable() || frame < 0 || frame * disc::kBytesPerFrame >= m_data_bytes) return 0;
  const int64_t left = m_data_bytes / disc::kBytesPerFrame - frame;
  frames = std::min(frames, static_cast<size_t>(left));
  const size_t got = readBytes(m_data_offset + frame * disc::kBytesPerFrame, samples,
                               frames * disc::kBytesPerFrame) /
                     static_cast<size_t>(disc::kBytesPerFrame);
  if (m_form == SampleForm::kBig) {
    for (size_t i = 0; i < got * 2; ++i) {
      const auto raw = static_cast<uint16_t>(samples[i]);
      samples[i] = static_cast<int16_t>(static_cast<uint16_t>(raw << 8 | raw >> 8));
    }
  }
  return got;
}

}  // namespace velmor::check
