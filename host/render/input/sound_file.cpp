#include "host/render/input/sound_file.h"

#include <unistd.h>

#include <algorithm>
#include <cstddef>
#include <utility>
#include <vector>

#include "disc/failure.h"
#include "disc/text/line_of_text.h"
#include "disc/text/phrases.h"
#include "host/render/input/audio_input.h"
#include "host/render/input/formats/stated_length.h"

namespace velmor::render {
namespace {

/// Hz, far below and above what recordings are made at: beyond them the header is damaged.
constexpr int kLowestRate = 1000;
constexpr int kHighestRate = 1000000;

constexpr size_t kCountingSamples = 65536;

// An MPEG stream without a header that counts its frames has no stated length: the decoder
// estimates it from the file's size, and stops there even if there is more music. So such a file is
// shown to the decoder as if it had this size, in bytes, for which the estimate is never too short.
constexpr sf_count_t kEndless = sf_count_t{1} << 50;

int descriptorOf(void* file) {
  return static_cast<ReadableFile*>(file)->descriptor();
}

sf_count_t endlessLength(void* /*file*/) {
  return kEndless;
}

sf_count_t seekIn(sf_count_t offset, int whence, void* file) {
  if (whence == SEEK_END) return ::lseek(descriptorOf(file), kEndless + offset, SEEK_SET);
  return ::lseek(descriptorOf(file), offset, whence);
}

sf_count_t readFrom(void* to, sf_count_t count, void* file) {
  return std::max<sf_count_t>(0, ::read(descriptorOf(file), to, static_cast<size_t>(count)));
}

sf_count_t writeNothing(const void* /*from*/, sf_count_t /*count*/, void* /*file*/) {
  return 0;
}

sf_count_t positionIn(void* file) {
  return ::lseek(descriptorOf(file), 0, SEEK_CUR);
}

int64_t countFrames(SNDFILE* handle, int channels) {
  const size_t width = static_cast<size_t>(channels);
  const size_t block = std::max<size_t>(1, kCountingSamples / width);
  std::vector<double> samples(block * width);
  int64_t frames = 0;
  for (;;) {
    const sf_count_t got = sf_readf_double(handle, samples.data(), static_cast<sf_count_t>(block));
    if (got <= 0) return frames;
    frames += got;
  }
}

[[noreturn]] void refuse(const std::string& path, const std::string& reason) {
  throw Failure(disc::inQuotes(path) + " " + reason);
}

}  // namespace

SoundFile::SoundFile(const std::string& path) {
  open(path);
  if (m_info.channels < 1) refuse(path, "states no channels; export it again");
  if (m_info.samplerate < kLowestRate || m_info.samplerate > kHighestRate) {
    refuse(path, "states a sample rate of " + std::to_string(m_info.samplerate) +
                     " Hz, which no recording has; export it again");
  }
  if ((m_info.format & SF_FORMAT_TYPEMASK) == SF_FORMAT_MPEG) {
    settleMpegLength(path);
  } else if (m_info.frames == SF_COUNT_MAX) {
    const int64_t frames = countFrames(m_handle.get(), m_info.channels);
    open(path);
    m_info.frames = frames;
  }
  if (m_info.frames <= 0) refuse(path, "holds no audio; leave it out or export it again");
}

// By descriptor and not by name: libsndfile would go by the name's ending where the contents tell
// nothing, and take a text for headerless telephone audio.
void SoundFile::open(const std::string& path) {
  m_handle.reset();
  m_file = std::make_unique<ReadableFile>(path);
  if (m_file->size() == 0) refuse(path, "is empty; export the audio again");
  switch (extentOf(m_file->bytes())) {
    case Extent::kWhole:
      break;
    case Extent::kBreaksOff:
      refuse(path, "breaks off before the end of its audio; copy or export it again");
    case Extent::kSeveralStreams:
      refuse(path,
             "holds several Ogg streams one after the other, of which only the first can be read; "
             "convert it to WAV or FLAC");
  }
  m_info = {};
  m_handle.reset(sf_open_fd(m_file->descriptor(), SFM_READ, &m_info, SF_FALSE));
  if (!m_handle) refuseUnreadable(path);
}

void SoundFile::openEndless(const std::string& path) {
  m_handle.reset();
  m_file = std::make_unique<ReadableFile>(path);
  SF_VIRTUAL_IO endless{endlessLength, seekIn, readFrom, writeNothing, positionIn};
  m_info = {};
  m_handle.reset(sf_open_virtual(&endless, SFM_READ, &m_info, m_file.get()));
  if (!m_handle) refuseUnreadable(path);
}

void SoundFile::settleMpegLength(const std::string& path) {
  const int64_t stated = m_info.frames;
  openEndless(path);
  // A length that does not depend on the size of the file is no estimate: the encoder has counted
  // it.
  if (m_info.frames == stated) return;
  const int64_t frames = countFrames(m_handle.get(), m_info.channels);
  openEndless(path);
  m_info.frames = frames;
}

void SoundFile::refuseUnreadable(const std::string& path) const {
  std::string reason = disc::asLineOfText(sf_strerror(nullptr));
  if (!reason.empty() && reason.back() == '.') reason.pop_back();
  refuse(path, "is no audio file that can be read: " + reason + "; convert it to WAV or FLAC");
}

}  // namespace velmor::render
