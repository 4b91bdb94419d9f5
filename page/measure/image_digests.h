// The check sums by which somebody tells that an image is the one of this page.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>

#include "disc/ddp/digests.h"
#include "disc/failure.h"
#include "page/album/page_disc.h"

namespace velmor::page {

/// Told of bytes done, since the last time. May throw, which ends the work.
using BytesDone = std::function<void(int64_t bytes)>;

/// MD5 and SHA-256 of the whole file, as md5sum and sha256sum print them; nothing when it cannot be
/// read to its end. Throws `Failure` when the system allows no MD5.
std::optional<ddp::DigestTexts> digestsOf(const PageImage& image, const BytesDone& progress);

}  // namespace velmor::page
