// The failure of writing an image, told by its reason.
#pragma once

#include <string>

#include "disc/failure.h"

namespace velmor::render {

/// The reason that the file at `path` does not grow, with what to do, when it is as long as this
/// process may make files; empty when it is shorter. The module reports a write that such a limit
/// cuts short as it reports a full disk.
std::string fileSizeLimitMet(const std::string& path);

/// Throws `Failure` when the module has reported a failure of its writing of the image at
/// `path`.
void stopOnWriteFailure(const std::string& path);

}  // namespace velmor::render
