// The provider of the windowing layer for tests that call the module's own functions directly.
#pragma once

#include <string>
#include <vector>

#include "abi/quelm_provider.h"

namespace plugin_class_test {

/// What the process's provider answers from now on; null, as at the start: there is no layer.
void provide(QuelmLookupFn lookup);

/// What the module has given to the system log, which it does not reach.
std::vector<std::string>& loggedLines();

}  // namespace plugin_class_test
