#include "check/image/image_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <system_error>
#include <utility>

#include "check/image/swapped_bytes.h"
#include "disc/audio/source_format.h"
#include "disc/failure.h"
#include "disc/files/read_at.h"
#include "disc/units/disc_units.h"

namespace velmor::check {

namespace {

/// "mono", "stereo", "6 channels".
std::string channelsText(int channels) {
  if (channels == 1) return "mono";
  return channels == 2 ? "stereo" : std::to_string(channels) + " channels";
}

/// Empty when the samples are as a disc has them.
std::string wrongFormatOf(const SF_INFO& info) {
  const bool plain = (info.format & SF_FORMAT_SUBMASK) == SF_FORMAT_PCM_16;
  if (plain && info.samplerate == disc::kSampleRate && info.channels == 2) return {};
  return disc::formatName(info.format) + ", " + std::to_string(info.samplerate) + " Hz, " +
         channelsText(info.channels);
}

bool isOfType(disc::Container container, std::string_view type) {
  switch (container) {
    case disc::Container::kWave:
      return type == "WAVE";
    case disc::Container::kAiff:
      return type == "AIFF";
    case disc::Container::kFlac:
      return type == "WAVE" || type == "FLAC";
    default:
      return false;
  }
}

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
      m_container(other.m_container),
      m_form(other.m_form),
      m_bytes(other.m_bytes),
      m_data_bytes(other.m_data_bytes),
      m_header_bytes(other.m_header_bytes),
      m_sound(std::move(other.m_sound)),
      m_sound_frame(other.m_sound_frame),
      m_problem(std::move(other.m_problem)),
      m_wrong_format(std::move(other.m_wrong_format)) {}

int64_t ImageFile::sectors() const {
  return (m_data_bytes + disc::kBytesPerSector - 1) / disc::kBytesPerSector;
}

void ImageFile::locateSamples(std::string_view type) {
  int failure = 0;
  const disc::FileBytes bytes(m_descriptor, m_bytes, failure);
  m_container = disc::containerOf(bytes);
  if (type == "BINARY" || type == "MOTOROLA") {
    m_form = type == "BINARY" ? SampleForm::kLittle : SampleForm::kBig;
    m_data_bytes = m_bytes;
    m_header_bytes = disc::samplesIn(bytes).value_or(0);
  } else if (isOfType(m_container, type)) {
    // A container that was broken off before its samples is one of no samples.
    if (m_container == disc::Container::kFlac || disc::samplesIn(bytes))
      openSound();
    else
      m_form = SampleForm::kDecoded;
  } else if (type == "WAVE" || type == "AIFF") {
    m_mislabelled = true;
  } else {
    m_problem = "only raw samples, WAVE, AIFF and FLAC are";
  }
}

void ImageFile::openSound() {
  try {
    m_sound = std::make_unique<disc::SoundFile>(m_path.string(), disc::Incomplete::kTaken);
  } catch (const Failure& failure) {
    m_problem = failure.what();
    return;
  }
  m_wrong_format = wrongFormatOf(m_sound->info());
  if (!m_wrong_format.empty()) {
    m_problem = "it is " + m_wrong_format + ", and a disc is 16 bit, 44100 Hz, stereo";
    return;
  }
  m_form = SampleForm::kDecoded;
  m_data_bytes = m_sound->info().frames * disc::kBytesPerFrame;
}

size_t ImageFile::readFrames(int64_t frame, int16_t* samples, size_t frames) const {
  if (!readable() || frame < 0 || frame * disc::kBytesPerFrame >= m_data_bytes) return 0;
  const int64_t left = m_data_bytes / disc::kBytesPerFrame - frame;
  frames = std::min(frames, static_cast<size_t>(left));
  return m_sound ? readSound(frame, samples, frames) : readRaw(frame, samples, frames);
}

size_t ImageFile::readRaw(int64_t frame, int16_t* samples, size_t frames) const {
  const size_t got = disc::readAt(m_descriptor, frame * disc::kBytesPerFrame, samples,
                                  frames * disc::kBytesPerFrame) /
                     static_cast<size_t>(disc::kBytesPerFrame);
  if (m_form == SampleForm::kBig) {
    for (size_t i = 0; i < got * 2; ++i) samples[i] = swappedBytes(samples[i]);
  }
  return got;
}

size_t ImageFile::readSound(int64_t frame, int16_t* samples, size_t frames) const {
  SNDFILE* sound = m_sound->handle();
  if (frame != m_sound_frame) m_sound_frame = sf_seek(sound, frame, SEEK_SET);
  if (m_sound_frame != frame) return 0;
  const sf_count_t got = sf_readf_short(sound, samples, static_cast<sf_count_t>(frames));
  if (got > 0) m_sound_frame += got;
  return static_cast<size_t>(std::max<sf_count_t>(got, 0));
}

}  // namespace velmor::check
