#include "host/render/module/read_ahead.h"

#include <algorithm>
#include <cassert>
#include <memory>
#include <span>
#include <utility>

#include "disc/failure.h"
#include "disc/terminal/interrupt.h"
#include "disc/text/phrases.h"

namespace velmor::render {

namespace {

constexpr size_t kPieceFrames = 16384;
constexpr size_t kPiecesAhead = 6;
constexpr const char* kEndsEarly = " ends before its stated length; copy or export it again";

size_t pieceFrames(int block) {
  assert(block >= 1);
  const auto frames = static_cast<size_t>(block);
  return std::max(kPieceFrames / frames, size_t{1}) * frames;
}

/// Reads frames that are not rendered.
void skip(AudioInput& input, int64_t frames) {
  std::vector<double> left(kPieceFrames);
  std::vector<double> right(kPieceFrames);
  while (frames > 0) {
    stopIfInterrupted();
    const size_t wanted = std::min(kPieceFrames, static_cast<size_t>(frames));
    const size_t got = input.read(left.data(), right.data(), wanted);
    if (got == 0) throw Failure(disc::inQuotes(input.info().path) + kEndsEarly);
    frames -= static_cast<int64_t>(got);
  }
}

}  // namespace

ReadAhead::ReadAhead(const Album& album, const std::vector<FrameStretch>& written, Dither dither,
                     int block)
    : m_album(album),
      m_written(written),
      m_dither(dither),
      m_piece_frames(pieceFrames(block)),
      m_thread([this] { run(); }) {}

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
  m_used.push_back(std::move(m_ready.front()));
  m_ready.pop_front();
  lock.unlock();
  m_changed.notify_all();
  return true;
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

void ReadAhead::lookForClipping(const AudioPiece& piece) {
  const auto end = piece.start + static_cast<int64_t>(piece.left.size());
  const auto ends_by = [](const FrameStretch& one, int64_t frame) { return one.end <= frame; };
  auto stretch = std::lower_bound(m_written.begin(), m_written.end(), piece.start, ends_by);
  for (; stretch != m_written.end() && stretch->begin < end; ++stretch) {
    const int64_t from = std::max(stretch->begin, piece.start);
    const auto at = static_cast<size_t>(from - piece.start);
    const auto count = static_cast<size_t>(std::min(stretch->end, end) - from);
    m_clipping.look(std::span(piece.left).subspan(at, count),
                    std::span(piece.right).subspan(at, count), from);
  }
}

bool ReadAhead::put(AudioPiece&& piece) {
  std::unique_lock lock(m_mutex);
  m_changed.wait(lock, [this] { return m_ready.size() < kPiecesAhead || m_stopped; });
  if (m_stopped) return false;
  m_ready.push_back(std::move(piece));
  lock.unlock();
  m_changed.notify_all();
  return true;
}

AudioPiece ReadAhead::takeUsed() {
  AudioPiece piece;
  {
    const std::lock_guard lock(m_mutex);
    if (!m_used.empty()) {
      piece = std::move(m_used.back());
      m_used.pop_back();
    }
  }
  piece.left.resize(m_piece_frames);
  piece.right.resize(m_piece_frames);
  return piece;
}

/// Reads the inputs one after the other. A piece may hold the end of one and the beginning of the
/// next, since the module gets one stream.
void ReadAhead::readAll() {
  int64_t at = m_album.render_start;
  AudioPiece piece = takeUsed();
  size_t filled = 0;
  const auto deliver = [&] {
    piece.left.resize(filled);
    piece.right.resize(filled);
    piece.start = at - m_album.render_start - static_cast<int64_t>(filled);
    lookForClipping(piece);
    filled = 0;
    return put(std::move(piece));
  };
  for (const AlbumInput& place : m_album.inputs) {
    const int64_t end = std::min(place.start + place.info.frames, m_album.render_end);
    if (end <= at) continue;
    const std::unique_ptr<AudioInput> input = AudioInput::open(place.info.path, m_dither);
    if (input->info().frames != place.info.frames) {
      throw Failure(disc::inQuotes(place.info.path) +
                    " has changed while it was being rendered; start again");
    }
    skip(*input, at - place.start);
    while (at < end) {
      const size_t wanted = std::min(m_piece_frames - filled, static_cast<size_t>(end - at));
      const size_t got =
          input->read(piece.left.data() + filled, piece.right.data() + filled, wanted);
      if (got == 0) {
        throw Failure(disc::inQuotes(place.info.path) + kEndsEarly);
      }
      filled += got;
      at += static_cast<int64_t>(got);
      if (filled < m_piece_frames) continue;
      if (!deliver()) return;
      piece = takeUsed();
    }
  }
  if (filled > 0) deliver();
}

}  // namespace velmor::render
