// The samples of a disc, wherever its images lie.
#pragma once

#include <cstdint>
#include <optional>

#include "check/image/image_file.h"
#include "page/album/page_disc.h"

namespace velmor::page {

/// Reads one image at a time, which it opens for itself. One thread; several may each have one.
class DiscAudio {
 public:
  /// `disc` must outlive the object.
  explicit DiscAudio(const PageDisc& disc) : m_disc(disc) {}

  /// Fills `samples`, left and right in turn, with `sectors` sectors of the disc from `sector` on;
  /// with silence where no image has any.
  void read(int64_t sector, int64_t sectors, int16_t* samples);
  /// Has something that an image should hold been missing?
  bool brokeOff() const { return m_broke_off; }

 private:
  void readRun(const AudioRun& run, int64_t sector, int64_t sectors, int16_t* samples);

  const PageDisc& m_disc;
  std::optional<check::ImageFile> m_image;
  size_t m_open = 0;  ///< which image that is
  bool m_broke_off = false;
};

}  // namespace velmor::page
