// What ends a run that was called in a way that makes no sense.
#pragma once

#include "disc/failure.h"

namespace velmor::render {

/// Wrong usage: exit status 2 instead of 1. The text is one sentence.
class UsageError : public Failure {
  using Failure::Failure;
};

}  // namespace velmor::render
