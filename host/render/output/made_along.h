// What a render makes along with its album, once that is in its place.
#pragma once

#include <functional>
#include <string>

namespace velmor::render {

struct MadeAlong {
  std::string path;
  std::string failure;  ///< why it is not there, for a message; empty when it is
  bool interrupted = false;
};

/// Runs `make`. When it throws `Failure` or `Interrupted`, `made` says so: the album is complete
/// all the same.
void makeAlong(MadeAlong& made, const std::function<void()>& make);

/// The exit status for it: 1, or that of an interruption, after the reason was printed on standard
/// error, when it was not made, otherwise 0.
int statusOf(const MadeAlong& made);

}  // namespace velmor::render
