// The album's audio, read in front of the render by a thread of its own.
#pragma once

#include <condition_variable>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <exception>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include "host/render/album/album.h"
#include "host/render/input/audio_stretch.h"
#include "host/render/module/clipping.h"
#include "host/render/module/image_room.h"
#include "host/render/options/options.h"
#include "host/render/plan/track_plan.h"

namespace velmor::render {

/// A stretch of the render, of one input.
struct AudioPiece {
  AudioStretch audio;
  int64_t start = 0;  ///< frames from the render's start
};

/// What the reading of an input has shown, of what the image is to hold.
struct InputOutcome {
  size_t input = 0;  ///< its index among the album's
  Clipping clipping;
  bool has_added_dither = false;
};

/// Delivers the render's range piece by piece. A bounded number of pieces is in flight, so memory
/// does not grow with the album's length. A reading thread that is so far ahead reads on when some
/// pieces are used, since to be woken for every one would cost more than to read it. Until then it
/// makes room for the image, and rests.
class ReadAhead {
 public:
  /// `album` and `plan`, its layout, must outlive the object. `image` is the path of the image that
  /// the module has begun to write.
  ReadAhead(const Album& album, const TrackPlan& plan, Dither dither, const std::string& image);
  ~ReadAhead();
  ReadAhead(const ReadAhead&) = delete;
  ReadAhead& operator=(const ReadAhead&) = delete;

  /// The next piece, exchanged for a used one; false at the end. Throws what the reading thread ran
  /// into.
  bool next(AudioPiece& piece);
  /// One for each input that was read; complete, and to be read, once `next` has answered false.
  const std::vector<InputOutcome>& inputs() const { return m_inputs; }

 private:
  bool mayGoOn() const;
  void run();
  void readAll();
  bool readInput(size_t index, int64_t& at, int64_t end);
  void rest(std::unique_lock<std::mutex>& lock);
  void lookForClipping(const AudioPiece& piece, Clipping& clipping) const;
  bool put(AudioPiece&& piece);
  AudioPiece takeUsed();

  const Album& m_album;
  const TrackPlan& m_plan;
  const Dither m_dither;
  ImageRoom m_room;
  std::vector<InputOutcome> m_inputs;

  std::mutex m_mutex;
  std::condition_variable m_changed;
  std::deque<AudioPiece> m_ready;
  std::vector<AudioPiece> m_used;
  int64_t m_used_frames = 0;  ///< of all pieces that were handed out
  std::exception_ptr m_error;
  bool m_ended = false;
  bool m_stopped = false;
  std::thread m_thread;  ///< last: it uses what stands above
};

}  // namespace velmor::render
