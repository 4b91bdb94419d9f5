// Room for the image on its disk, found before the module writes there.
#pragma once

#include <cstdint>
#include <string>

namespace velmor::render {

/// Much of the time that a write takes goes into finding room for it, in memory more than into the
/// copying. The reading thread does that while nothing is left to read, for then it is the
/// rendering thread that is waited for. Nothing depends on it: where the system refuses, no more is
/// tried, and the module's own writing meets the reason. To be used by one thread.
class ImageRoom {
 public:
  /// The file at `path` is there, and is to be `bytes` (0 or more) long.
  ImageRoom(const std::string& path, int64_t bytes);
  ~ImageRoom();
  ImageRoom(const ImageRoom&) = delete;
  ImageRoom& operator=(const ImageRoom&) = delete;

  /// Makes a piece of room that nothing has been tried for yet, further back than where a writer
  /// that has reached byte `written` (0 or more) is at work. The file's length stays what has been
  /// written. False when no room is left to make, or the system has refused.
  bool makeBehind(int64_t written);

 private:
  int m_descriptor = -1;  ///< -1: the system has refused
  const int64_t m_bytes;
  int64_t m_reached = 0;
};

}  // namespace velmor::render
