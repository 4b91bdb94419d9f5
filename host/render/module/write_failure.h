// Why an image did not get on the disk.
#pragma once

#include <optional>
#include <string>

#include "disc/failure.h"

namespace velmor::render {

/// The end of a sentence, with what to do, when the file is as long as this process may make files.
/// The module reports a write that such a limit cuts short as it reports a full disk.
std::optional<std::string> fileSizeLimitMet(const std::string& path);

/// Throws `Failure` when the module has reported a failure of its writing of the image at
/// `path`.
void stopOnWriteFailure(const std::string& path);

}  // namespace velmor::render
