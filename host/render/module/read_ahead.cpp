#include "host/render/module/read_ahead.h"

#include <algorithm>
#include <memory>
#include <span>
#include <system_error>
#include <utility>

#include "disc/failure.h"
#include "disc/terminal/interrupt.h"
#include "disc/text/phrases.h"
#include "host/render/input/silences.h"

namespace velmor::render {

namespace {

constexpr size_t kPieceFrames = 16384;
/// A thread waits for a processor for some milliseconds when all are busy. So much is read ahead,
/// and the reading thread woken so early, that the render does not wait along with it.
constexpr size_t kPiecesAhead = 32;
constexpr size_t kPiecesLeftToWakeAt = 24;
constexpr const char* kEndsEarly = " ends before its stated length; copy or export it again";

/// Reads the next of `due` frames (at least 1) that the input must still have.
void readFrames(AudioInput& input, int64_t due, AudioStretch& stretch) {
  input.readStretch(stretch, std::min(kPieceFrames, static_cast<size_t>(due)));
  if (stretch.frames() == 0) throw Failure(disc::inQuotes(input.info().path) + kEndsEarly);
}

/// Reads frames that are not rendered.
void skip(AudioInput& input, int64_t frames) {
  AudioStretch skipped;
  while (frames > 0) {
    stopIfInterrupted();
    readFrames(input, frames, skipped);
    frames -= static_cast<int64_t>(skipped.frames());
  }
}

}  // namespace

ReadAhead::ReadAhead(const Album& album, const TrackPlan& plan, Dither dither,
                     const std::string& image)
    : m_album(album),
      m_plan(plan),
      m_dither(dither),
      m_room(image, plan.image_frames * disc::kBytesPerFrame) {
  try {
    m_thread = std::thread([this] { run(); });
  } catch (const std::system_error& refusal) {
    throw Failure("the inputs cannot be read beside the rendering: " + refusal.code().message() +
                  "; close other programs and start again");
  }
}

ReadAhead::~ReadAhead() {
  {
    const std::lock_guard lock(m_mutex);
    m_stopped = true;
  }
  m_changed.notify_all();
  m_thread.join();
}

bool ReadAhead::next(AudioPiece& piece) {
  std::unique_lock lock(m_mutex);
  m_changed.wait(lock, [this] { return !m_ready.empty() || m_ended; });
  if (m_ready.empty()) {
    if (m_error) std::rethrow_exception(m_error);
    return false;
  }
  std::swap(piece, m_ready.front());
  m_used_frames += static_cast<int64_t>(piece.audio.frames());
  m_used.push_back(std::move(m_ready.front()));
  m_ready.pop_front();
  const bool may_go_on = mayGoOn();
  lock.unlock();
  if (may_go_on) m_changed.notify_all();
  return true;
}

/// Whether a reading thread that rests may go on.
bool ReadAhead::mayGoOn() const {
  return m_ready.size() <= kPiecesLeftToWakeAt;
}

void ReadAhead::run() {
  std::exception_ptr error;
  try {
    readAll();
  } catch (...) {
    error = std::current_exception();
  }
  const std::lock_guard lock(m_mutex);
  m_error = error;
  m_ended = true;
  m_changed.notify_all();
}

/// Returns when the reading may go on. Until then it makes room for the image, behind all that the
/// pieces used so far can have brought: the module may have put all silence that it adds before
/// them.
void ReadAhead::rest(std::unique_lock<std::mutex>& lock) {
  const int64_t added = std::max<int64_t>(m_plan.image_frames - m_album.frames(), 0);
  while (!mayGoOn() && !m_stopped) {
    const int64_t written = (m_used_frames + added) * disc::kBytesPerFrame;
    lock.unlock();
    const bool is_made = m_room.makeBehind(written);
    lock.lock();
    if (!is_made) m_changed.wait(lock, [this] { return mayGoOn() || m_stopped; });
  }
}

/// Packed samples are integers, of which none is beyond full scale.
void ReadAhead::lookForClipping(const AudioPiece& piece, Clipping& clipping) const {
  if (piece.audio.isPacked()) return;
  const auto end = piece.start + static_cast<int64_t>(piece.audio.frames());
  const auto ends_by = [](const FrameStretch& one, int64_t frame) { return one.end <= frame; };
  auto stretch =
      std::lower_bound(m_plan.written.begin(), m_plan.written.end(), piece.start, ends_by);
  for (; stretch != m_plan.written.end() && stretch->begin < end; ++stretch) {
    const int64_t from = std::max(stretch->begin, piece.start);
    const auto at = static_cast<size_t>(from - piece.start);
    const auto count = static_cast<size_t>(std::min(stretch->end, end) - from);
    clipping.look(std::span(piece.audio.left()).subspan(at, count),
                  std::span(piece.audio.right()).subspan(at, count), from);
  }
}

bool ReadAhead::put(AudioPiece&& piece) {
  std::unique_lock lock(m_mutex);
  if (m_ready.size() >= kPiecesAhead) rest(lock);
  if (m_stopped) return false;
  m_ready.push_back(std::move(piece));
  lock.unlock();
  m_changed.notify_all();
  return true;
}

AudioPiece ReadAhead::takeUsed() {
  const std::lock_guard lock(m_mutex);
  if (m_used.empty()) return {};
  AudioPiece piece = std::move(m_used.back());
  m_used.pop_back();
  return piece;
}

void ReadAhead::readAll() {
  int64_t at = m_album.render_start;
  for (size_t i = 0; i < m_album.inputs.size(); ++i) {
    const AlbumInput& place = m_album.inputs[i];
    const int64_t end = std::min(place.start + place.info.frames, m_album.render_end);
    if (end > at && !readInput(i, at, end)) return;
  }
}

/// Puts an input's frames from `at` to `end`, both of the timeline, and moves `at` on. False when
/// they are not wanted any more.
bool ReadAhead::readInput(size_t index, int64_t& at, int64_t end) {
  const AlbumInput& place = m_album.inputs[index];
  const std::unique_ptr<AudioInput> input = openLaidOut(place.info, m_dither);
  if (input->info().frames != place.info.frames) {
    throw Failure(disc::inQuotes(place.info.path) +
                  " has changed while it was being rendered; start again");
  }
  skip(*input, at - place.start);
  InputOutcome outcome;
  outcome.input = index;
  while (at < end) {
    AudioPiece piece = takeUsed();
    readFrames(*input, end - at, piece.audio);
    piece.start = at - m_album.render_start;
    at += static_cast<int64_t>(piece.audio.frames());
    lookForClipping(piece, outcome.clipping);
    if (!put(std::move(piece))) return false;
  }
  outcome.has_added_dither = input->hasAddedDither();
  m_inputs.push_back(outcome);
  return true;
}

}  // namespace velmor::render
