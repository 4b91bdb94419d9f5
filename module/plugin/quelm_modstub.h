// The import of the windowing layer.
#pragma once

#include <cstdint>

/// Stands in for a layer function that the host lacks, and returns 0 whatever it is called with.
/// The calling convention leaves arguments to the caller, so it may stand in for any signature.
intptr_t dummyFunc();

/// Fills every pointer of the windowing layer from the host's provider. A function that is missing
/// is named in the system log and does not stop the module.
class QuelmAPPInitializer {
 public:
  QuelmAPPInitializer();
};
