// All that is measured of a disc.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "disc/ddp/digests.h"
#include "disc/failure.h"
#include "page/measure/disc_ids.h"
#include "page/measure/loudness.h"
#include "page/measure/outline.h"

namespace velmor::page {

struct ClippedCount {
  int64_t runs = 0;
  int64_t longest = 0;           ///< samples
  std::optional<int64_t> first;  ///< sector
  bool more = false;             ///< the list of them ended before the track did
};

struct MeasuredDisc {
  Outline outline;
  std::vector<std::optional<Loudness>> loudness;  ///< of each track; nothing: it was not measured
  std::optional<Loudness> whole;                  ///< of all tracks together
  std::vector<ClippedCount> clipped;              ///< of each track
  std::vector<std::optional<ddp::DigestTexts>> digests;  ///< of each image; nothing: unreadable
  std::optional<DiscIds> ids;
};

/// Told of the work done and of all, on the calling thread. May throw, which ends the work.
using MeasureProgress = std::function<void(int64_t done, int64_t all)>;

/// Reads the images on several threads. Throws `Failure` when the system allows no MD5.
MeasuredDisc measure(const PageDisc& disc, const MeasureProgress& progress);

}  // namespace velmor::page
