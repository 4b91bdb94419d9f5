// Where the host's windowing provider is found.
#pragma once

#include "abi/quelm_provider.h"

/// The host's lookup function, or null when the process offers none. Asked once, at load time.
extern "C" QuelmLookupFn platformFindWindowingProvider();
