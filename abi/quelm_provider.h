// How the windowing layer is obtained. This header leaves out the layer's types, so that
// Objective-C code can include it: the layer's BOOL and that of Objective-C cannot be declared in
// the same file.
#pragma once

#include <cstdint>

/// The windowing layer's lookup function: a layer function by name, null when it has no such
/// function. Called with a null name it returns the layer's interface version as a pointer-wide
/// value.
using QuelmLookupFn = void* (*)(const char* name);
/// What the host's provider is: called once, when the module is loaded; may return null.
using QuelmProviderFn = QuelmLookupFn (*)();

inline constexpr intptr_t kQuelmApiVersion = 256;
