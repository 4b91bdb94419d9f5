// The module's pointers to the windowing layer's functions.
//
// Filled once, when the module is loaded, and never null: a function the host does not offer is
// replaced by a placeholder that returns 0.
#pragma once

#include <type_traits>

#include "abi/quelm_types.h"

/// A function that is imported with the rest and not called by the module.
using QuelmAnyFn = intptr_t (*)();

#define QUELM_TYPED(name, ...) extern std::type_identity_t<__VA_ARGS__> name;
#define QUELM_OPAQUE(name) extern QuelmAnyFn name;
#include "abi/quelm_functions.inc"
#undef QUELM_TYPED
#undef QUELM_OPAQUE
