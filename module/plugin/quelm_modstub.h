// The import of the windowing layer.
#pragma once

#include <cstdint>

/// What a layer function that the host lacks is replaced by: returns 0, whatever it is called with.
/// The calling convention leaves arguments to the caller, so it may stand in for any signature.
intptr_t dummyFunc();

/// Fills every pointer of the windowing layer from the host's provider. What is missing goes to the
/// system log and never stops the module.
class QuelmAPPInitializer {
 public:
  QuelmAPPInitializer();
};
