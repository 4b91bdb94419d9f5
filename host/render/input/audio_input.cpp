#include "host/render/input/audio_input.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <utility>

#include "disc/audio/sound_file.h"
#include "disc/audio/source_format.h"
#include "disc/failure.h"
#include "disc/text/phrases.h"
#include "disc/units/disc_units.h"
#include "host/render/input/dithered_input.h"
#include "host/render/input/formats/plain_pcm.h"
#include "host/render/input/marks/embedded_marks.h"
#include "host/render/input/marks/vorbis_comments.h"
#include "host/render/input/resampler.h"
#include "host/render/input/sheets/flac_cuesheet.h"

namespace velmor::render {
namespace {

constexpr size_t kBlockFrames = 16384;
/// Bounds a block of a file with hundreds of channels.
constexpr size_t kBlockSamples = 4 * kBlockFrames;
constexpr int kDiscBits = 16;

std::string textIn(SNDFILE* file, int kind, Tags& tags) {
  const char* text = sf_get_string(file, kind);
  return text ? tags.read(text) : std::string();
}

InputInfo describe(const std::string& path, const disc::SoundFile& sound) {
  SNDFILE* file = sound.handle();
  InputInfo info;
  info.path = path;
  info.format = disc::formatName(sound.info().format);
  info.coding = disc::codingName(sound.info().format);
  info.rate = sound.info().samplerate;
  info.channels = sound.info().channels;
  info.bits = disc::integerBits(sound.info().format);
  info.frames = framesAtDiscRate(sound.info().frames, sound.info().samplerate);
  info.tags.title = textIn(file, SF_STR_TITLE, info.tags);
  info.tags.artist = textIn(file, SF_STR_ARTIST, info.tags);
  info.tags.album = textIn(file, SF_STR_ALBUM, info.tags);
  info.tags.date = textIn(file, SF_STR_DATE, info.tags);
  info.tags.genre = textIn(file, SF_STR_GENRE, info.tags);
  addVorbisComments(vorbisCommentsIn(sound.bytes()), info.tags);
  info.marks = embeddedMarks(file, sound.info(), sound.bytes(), info.tags.converted);
  if (info.marks.empty()) {
    FileMarks carried =
        marksOfCarriedSheet(sound.bytes(), path, info.rate, info.tags, info.warnings);
    info.marks = std::move(carried.marks);
    info.pauses = std::move(carried.pauses);
    info.silences = std::move(carried.silences);
  }
  sound.checkReading();  // or a mark would be missing that nobody misses
  return info;
}

std::string minutesOf(int64_t frames, int rate) {
  const int64_t seconds = frames / rate;
  std::array<char, 32> text{};
  std::snprintf(text.data(), text.size(), "%lld:%02lld", static_cast<long long>(seconds / 60),
                static_cast<long long>(seconds % 60));
  return text.data();
}

/// The file's own frames as one or two planar channels, a block at a time.
class SourceBlocks {
 public:
  SourceBlocks(std::unique_ptr<disc::SoundFile> sound, std::string path)
      : m_sound(std::move(sound)),
        m_path(std::move(path)),
        m_channels(static_cast<size_t>(m_sound->info().channels)),
        m_block_frames(std::clamp<size_t>(kBlockSamples / m_channels, 1, kBlockFrames)),
        m_plain_bytes(plainSampleBytes(m_sound->info().format)),
        m_frame_bytes(m_plain_bytes * m_channels),
        m_bytes(m_plain_bytes ? m_block_frames * m_frame_bytes + kPlainSlack : 0),
        m_samples(m_plain_bytes ? 0 : m_block_frames * m_channels) {}

  bool mono() const { return m_channels == 1; }
  /// Frames that wait for `copy`; loads the next block when there are none. 0 at the end. Throws
  /// `Failure` when the file ends before the length it states.
  size_t available() {
    if (m_used == m_filled && m_position < m_sound->info().frames) load();
    return m_filled - m_used;
  }
  /// At most `available()` frames. `right` may be null in a mono file.
  void copy(double* left, double* right, size_t frames) {
    if (m_plain_bytes) {
      copyPlain(left, right, frames);
    } else {
      copyDecoded(left, right, frames);
    }
    m_used += frames;
  }
  /// Whether `readPacked` can go on from here: not when frames wait for `copy`, nor with so many
  /// channels that most of what it reads would be of no use.
  bool isPackable() const { return m_plain_bytes != 0 && m_channels <= 2 && m_used == m_filled; }
  /// The next frames, fewer only at the end. Throws like `available`.
  void readPacked(AudioStretch& stretch, size_t frames) {
    stretch.fillPacked(m_plain_bytes, m_channels, frames, [this](std::byte* to, size_t wanted) {
      return accept(readPlain(to, static_cast<sf_count_t>(wanted)),
                    static_cast<sf_count_t>(wanted));
    });
  }

 private:
  void copyPlain(double* left, double* right, size_t frames) const {
    const std::byte* from = m_bytes.data() + m_used * m_frame_bytes;
    decodePlainFrames(from, m_plain_bytes, m_channels, left, right, frames);
  }
  void copyDecoded(double* left, double* right, size_t frames) const {
    const double* from = m_samples.data() + m_used * m_channels;
    if (mono()) {
      std::copy_n(from, frames, left);
      return;
    }
    for (size_t i = 0; i < frames; ++i, from += m_channels) {
      left[i] = from[0];
      right[i] = from[1];
    }
  }
  void load() {
    m_used = m_filled = 0;
    const auto wanted = static_cast<sf_count_t>(m_block_frames);
    m_filled = accept(m_plain_bytes ? readPlain(m_bytes.data(), wanted)
                                    : sf_readf_double(m_sound->handle(), m_samples.data(), wanted),
                      wanted);
  }
  /// Frames read, fewer than wanted at the end.
  sf_count_t readPlain(std::byte* to, sf_count_t wanted) {
    const auto width = static_cast<sf_count_t>(m_frame_bytes);
    return sf_read_raw(m_sound->handle(), to, wanted * width) / width;
  }
  /// How many of the `got` frames that were read are the audio's: a chunk may follow it. Throws
  /// when there should be more.
  size_t accept(sf_count_t got, sf_count_t wanted) {
    const sf_count_t due = std::min<sf_count_t>(wanted, m_sound->info().frames - m_position);
    if (got < due || sf_error(m_sound->handle()) != SF_ERR_NO_ERROR)
      breakOff(std::max<sf_count_t>(got, 0));
    m_position += due;
    return static_cast<size_t>(due);
  }
  [[noreturn]] void breakOff(sf_count_t got) const {
    m_sound->checkReading();
    const int rate = m_sound->info().samplerate;
    throw Failure(disc::inQuotes(m_path) + " breaks off or is damaged at " +
                  minutesOf(m_position + got, rate) + " of " +
                  minutesOf(m_sound->info().frames, rate) + "; copy or export it again");
  }

  std::unique_ptr<disc::SoundFile> m_sound;
  std::string m_path;
  size_t m_channels;
  size_t m_block_frames;
  size_t m_plain_bytes;            ///< of a sample; 0: the decoder is needed
  size_t m_frame_bytes;            ///< 0 likewise
  std::vector<std::byte> m_bytes;  ///< frames as they lie in a plain file
  std::vector<double> m_samples;   ///< interleaved, from the decoder
  size_t m_used = 0, m_filled = 0;
  int64_t m_position = 0;  ///< frames loaded so far
};

/// A source at the disc's rate.
class PlainInput : public AudioInput {
 public:
  PlainInput(InputInfo info, std::unique_ptr<disc::SoundFile> sound)
      : m_info(std::move(info)), m_source(std::move(sound), m_info.path) {}

  const InputInfo& info() const override { return m_info; }
  size_t read(double* left, double* right, size_t frames) override {
    size_t done = 0;
    while (done < frames) {
      const size_t count = std::min(frames - done, m_source.available());
      if (count == 0) break;
      m_source.copy(left + done, right + done, count);
      done += count;
    }
    if (m_source.mono()) std::copy_n(left, done, right);
    return done;
  }
  void readStretch(AudioStretch& stretch, size_t frames) override {
    if (!m_source.isPackable()) return AudioInput::readStretch(stretch, frames);
    m_source.readPacked(stretch, frames);
  }

 private:
  InputInfo m_info;
  SourceBlocks m_source;
};

/// A source at another rate.
class ResampledInput : public AudioInput {
 public:
  ResampledInput(InputInfo info, std::unique_ptr<disc::SoundFile> sound)
      : m_info(std::move(info)),
        m_source(std::move(sound), m_info.path),
        m_resampler(m_info.rate, m_source.mono() ? 1 : 2),
        m_left(kBlockFrames),
        m_right(m_source.mono() ? 0 : kBlockFrames) {}

  const InputInfo& info() const override { return m_info; }
  size_t read(double* left, double* right, size_t frames) override {
    const size_t due = static_cast<size_t>(std::min<int64_t>(
        static_cast<int64_t>(std::min(frames, kMostFrames)), m_info.frames - m_delivered));
    size_t done = 0;
    while (done < due) {
      const std::array<double*, 2> out{left + done, right + done};
      const size_t made = produce(out, due - done);
      if (made == 0 && m_drained) break;
      done += made;
    }
    // The resampler may end a frame early, since it computes its length in floating point. The
    // length that `framesAtDiscRate` gives is the one promised, so silence fills it up.
    std::fill(left + done, left + due, 0.0);
    if (!m_source.mono()) std::fill(right + done, right + due, 0.0);
    if (m_source.mono()) std::copy_n(left, due, right);
    m_delivered += static_cast<int64_t>(due);
    return due;
  }

 private:
  static constexpr size_t kMostFrames = size_t{1} << 30;
  /// 30 dB above full scale: still loud after the filter when a single sample at a much higher rate
  /// has it.
  static constexpr double kLoudest = 32.0;

  size_t produce(const std::array<double*, 2>& out, size_t frames) {
    if (m_used == m_filled) load();
    if (m_filled == 0) {
      const size_t made = m_resampler.drain(out.data(), frames);
      m_drained = made == 0;
      return made;
    }
    const std::array<const double*, 2> in{m_left.data() + m_used,
                                          m_right.data() + (m_source.mono() ? 0 : m_used)};
    const Resampler::Step step =
        m_resampler.process(in.data(), m_filled - m_used, out.data(), frames);
    m_used += step.taken;
    return step.made;
  }
  void load() {
    m_used = 0;
    m_filled = std::min(m_source.available(), m_left.size());
    m_source.copy(m_left.data(), m_right.data(), m_filled);
    tame(m_left);
    tame(m_right);
  }
  /// A NaN becomes silence, since the filter would spread it over all that follows. Infinite and
  /// absurdly large samples are cut to `kLoudest`: they still clip, but the filter rings for
  /// hundredths of a second only.
  static void tame(std::vector<double>& samples) {
    for (double& sample : samples) {
      sample = std::isnan(sample) ? 0.0 : std::clamp(sample, -kLoudest, kLoudest);
    }
  }

  InputInfo m_info;
  SourceBlocks m_source;
  Resampler m_resampler;
  std::vector<double> m_left, m_right;
  size_t m_used = 0, m_filled = 0;
  bool m_drained = false;
  int64_t m_delivered = 0;
};

}  // namespace

void AudioInput::readStretch(AudioStretch& stretch, size_t frames) {
  stretch.fillDecoded(
      frames, [this](double* left, double* right, size_t most) { return read(left, right, most); });
}

std::unique_ptr<AudioInput> AudioInput::open(const std::string& path, Dither dither,
                                             disc::RawSamples raw) {
  auto sound = std::make_unique<disc::SoundFile>(path, disc::Incomplete::kRefused, raw);
  InputInfo info = describe(path, *sound);
  info.raw = raw;
  if (info.frames == 0) {
    throw Failure(disc::inQuotes(path) + " is shorter than one frame at 44100 Hz; leave it out");
  }
  const bool resampled = info.rate != disc::kSampleRate;
  if (resampled || info.bits == 0 || info.bits > kDiscBits) {
    info.to_16_bits = dither == Dither::kTpdf ? To16Bits::kDithered : To16Bits::kRounded;
  }
  std::unique_ptr<AudioInput> input;
  if (!resampled) {
    input = std::make_unique<PlainInput>(std::move(info), std::move(sound));
  } else {
    try {
      input = std::make_unique<ResampledInput>(std::move(info), std::move(sound));
    } catch (const Failure& failure) {
      throw Failure(disc::inQuotes(path) + " cannot be brought to 44100 Hz: " + failure.what() +
                    "; convert it first");
    }
  }
  if (input->info().to_16_bits != To16Bits::kDithered) return input;
  return std::make_unique<DitheredInput>(std::move(input));
}

}  // namespace velmor::render
