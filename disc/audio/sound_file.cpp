#include "disc/audio/sound_file.h"

#include <algorithm>
#include <cstddef>
#include <cstdio>
#include <utility>
#include <vector>

#include "disc/audio/foreign_format.h"
#include "disc/audio/stated_length.h"
#include "disc/failure.h"
#include "disc/text/line_of_text.h"
#include "disc/text/phrases.h"
#include "disc/units/disc_units.h"

namespace velmor::disc {
namespace {

/// Hz, far below and above what recordings are made at: beyond them the header is damaged.
constexpr int kLowestRate = 1000;
constexpr int kHighestRate = 1000000;

constexpr size_t kCountingSamples = 65536;

// An MPEG stream without a header that counts its frames has no stated length: the decoder
// estimates it from the file's size, and stops there even if there is more music. So such a file is
// shown to the decoder as if it had this size, in bytes, for which the estimate is never too short.
constexpr sf_count_t kEndless = sf_count_t{1} << 50;

ReadableFile& fileOf(void* file) {
  return *static_cast<ReadableFile*>(file);
}

sf_count_t lengthOf(void* file) {
  return fileOf(file).size();
}

sf_count_t seekTo(ReadableFile& file, sf_count_t offset, int whence, sf_count_t length) {
  const sf_count_t from = whence == SEEK_SET ? 0 : whence == SEEK_CUR ? file.position() : length;
  // Nor behind the file's true end: the decoder must not find the tag there that it looks for at
  // the end of an endless file.
  if (from + offset < 0 || from + offset > file.size()) return -1;
  file.setPosition(from + offset);
  return file.position();
}

sf_count_t seekIn(sf_count_t offset, int whence, void* file) {
  return seekTo(fileOf(file), offset, whence, lengthOf(file));
}

sf_count_t endlessLength(void* /*file*/) {
  return kEndless;
}

sf_count_t seekInEndless(sf_count_t offset, int whence, void* file) {
  return seekTo(fileOf(file), offset, whence, kEndless);
}

sf_count_t readFrom(void* to, sf_count_t count, void* file) {
  return fileOf(file).read(to, static_cast<size_t>(count));
}

sf_count_t writeNothing(const void* /*from*/, sf_count_t /*count*/, void* /*file*/) {
  return 0;
}

sf_count_t positionIn(void* file) {
  return fileOf(file).position();
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
  throw Failure(inQuotes(path) + " " + reason);
}

}  // namespace

SoundFile::SoundFile(const std::string& path, Incomplete incomplete, RawSamples raw)
    : m_incomplete(incomplete) {
  if (raw == RawSamples::kNone) {
    open(path);
  } else {
    openRaw(path, raw);
  }
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
  if (m_info.frames <= 0 && m_incomplete == Incomplete::kRefused)
    refuse(path, "holds no audio; leave it out or export it again");
}

// Not by name: libsndfile would go by the name's ending where the contents tell nothing, and take a
// text for headerless telephone audio. And not by descriptor, since it makes missing bytes of what
// the system refuses to read.
void SoundFile::open(const std::string& path) {
  m_handle.reset();
  m_file = std::make_unique<ReadableFile>(path);
  if (m_file->size() == 0) refuse(path, "is empty; export the audio again");
  const Extent extent = extentOf(m_file->bytes());
  m_file->checkReading();
  switch (extent) {
    case Extent::kWhole:
      break;
    case Extent::kBreaksOff:
      m_breaks_off = true;
      if (m_incomplete == Incomplete::kTaken) break;
      refuse(path, "breaks off before the end of its audio; copy or export it again");
    case Extent::kSeveralStreams:
      refuse(path,
             "holds several Ogg streams one after the other, of which only the first can be read; "
             "convert it to WAV or FLAC");
  }
  SF_VIRTUAL_IO whole{lengthOf, seekIn, readFrom, writeNothing, positionIn};
  m_info = {};
  decode(path, whole);
}

void SoundFile::openRaw(const std::string& path, RawSamples raw) {
  m_file = std::make_unique<ReadableFile>(path);
  if (m_file->size() == 0) refuse(path, "is empty; copy the image again");
  const int order = raw == RawSamples::kBigEndian ? SF_ENDIAN_BIG : SF_ENDIAN_LITTLE;
  m_info.format = SF_FORMAT_RAW | SF_FORMAT_PCM_16 | order;
  m_info.samplerate = disc::kSampleRate;
  m_info.channels = 2;
  SF_VIRTUAL_IO whole{lengthOf, seekIn, readFrom, writeNothing, positionIn};
  decode(path, whole);
}

void SoundFile::openEndless(const std::string& path) {
  m_handle.reset();
  m_file = std::make_unique<ReadableFile>(path);
  m_info = {};
  SF_VIRTUAL_IO endless{endlessLength, seekInEndless, readFrom, writeNothing, positionIn};
  decode(path, endless);
}

/// The rest of opening: the decoder reads the header through `access`; of a file without one
/// `m_info` says what is in it.
void SoundFile::decode(const std::string& path, SF_VIRTUAL_IO& access) {
  m_handle.reset(sf_open_virtual(&access, SFM_READ, &m_info, m_file.get()));
  m_file->checkReading();
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
  const std::string foreign = foreignFormat(m_file->bytes(), path);
  m_file->checkReading();
  if (!foreign.empty()) refuse(path, foreign);
  std::string reason = asLineOfText(sf_strerror(nullptr));
  if (!reason.empty() && reason.back() == '.') reason.pop_back();
  refuse(path, "is no audio file that can be read: " + reason + "; convert it to WAV or FLAC");
}

}  // namespace velmor::disc
