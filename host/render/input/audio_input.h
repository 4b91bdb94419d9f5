// One input of an album: an audio file that delivers stereo at the disc's rate, and what the file
// says of itself.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "disc/audio/raw_samples.h"
#include "disc/failure.h"
#include "disc/units/disc_units.h"
#include "host/render/input/audio_stretch.h"
#include "host/render/input/marks/mark.h"
#include "host/render/input/marks/tags.h"
#include "host/render/input/sheets/silence.h"

namespace velmor::render {

enum class Dither { kNone, kTpdf };

/// What makes 16 bits of a source's samples.
enum class To16Bits {
  kExact,    ///< nothing: they fit
  kRounded,  ///< each goes to the nearest step
  kDithered  ///< triangular noise first, but not where they fit for a while
};

/// What begins with an input by itself, without a mark.
enum class Beginning {
  kTrack,
  kNothing,  ///< the marks of a cue sheet say it all
  kJoined    ///< it goes on with the track of the input before
};

struct InputInfo {
  std::string path;
  disc::RawSamples raw = disc::RawSamples::kNone;
  int number = 0;  ///< of the input as it was given, from 1; 0: the same as its place
  Beginning beginning = Beginning::kTrack;
  std::string format;  ///< for people: "WAV, 24 bit", "FLAC, 16 bit", …
  std::string coding;  ///< likewise, of the samples alone: "24 bit"
  int rate = 0;        ///< Hz, of the file
  int channels = 0;    ///< of the file
  int bits = 0;        ///< of integer samples; 0: floating point or lossy
  int64_t frames = 0;  ///< at the disc's rate, exactly what `read` delivers in all
  To16Bits to_16_bits = To16Bits::kExact;
  Tags tags;
  std::vector<Mark> marks;  ///< cue points, labels and regions of the file, in ascending start
  /// Where pauses begin that last until the next track's mark, in this input or a later one;
  /// seconds like those of the marks.
  std::vector<double> pauses;
  std::vector<Silence> silences;  ///< that the audio gets; the times of the marks count them
  std::vector<Silence> cuts;  ///< stretches, behind `at`, of audio and silences that are left out
  std::vector<std::string> warnings;  ///< clauses about what marks cannot say
};

/// Reads one file from start to end with memory that does not grow with its length. One thread.
class AudioInput {
 public:
  /// Opens `path`; throws `Failure`.
  static std::unique_ptr<AudioInput> open(const std::string& path, Dither dither,
                                          disc::RawSamples raw = disc::RawSamples::kNone);

  virtual ~AudioInput() = default;
  AudioInput(const AudioInput&) = delete;
  AudioInput& operator=(const AudioInput&) = delete;

  virtual const InputInfo& info() const = 0;
  /// Fills up to `frames` frames of both channels, full scale 1.0; fewer only at the end, 0 there.
  /// A source of at most 16 bits at the disc's rate keeps its very samples. Throws `Failure`
  /// when the file breaks off.
  virtual size_t read(double* left, double* right, size_t frames) = 0;
  /// The same for who decodes later, or elsewhere: `stretch` has 0 frames at the end.
  virtual void readStretch(AudioStretch& stretch, size_t frames);
  /// Whether any sample that was read so far has got dither, or one close behind it.
  virtual bool hasAddedDither() const { return false; }

 protected:
  AudioInput() = default;
};

}  // namespace velmor::render
