// The failure of a run whose command line makes no sense.
#pragma once

#include "disc/failure.h"

namespace velmor::render {

/// The program ends with status 2 instead of 1. The text is a clause for a message.
class UsageError : public Failure {
  using Failure::Failure;
};

}  // namespace velmor::render
