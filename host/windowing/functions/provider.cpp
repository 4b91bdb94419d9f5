#include "host/windowing/functions/provider.h"

#include <algorithm>
#include <iterator>
#include <string_view>
#include <type_traits>

#include "abi/quelm_functions.h"
#include "host/windowing/functions/layer_functions.h"

namespace velmor::windowing {
namespace {

/// Stands for every function that would need a window server: does nothing, and answers 0.
intptr_t noWindowServer() {
  return 0;
}

// Every name of the layer once more, out here. Inside `functions` a name means the layer's own
// function where there is one, which hides this one; otherwise it means this one.
#define QUELM_TYPED(name, ...) [[maybe_unused]] constexpr QuelmAnyFn name = &noWindowServer;
#define QUELM_OPAQUE(name) [[maybe_unused]] constexpr QuelmAnyFn name = &noWindowServer;
#include "abi/quelm_functions.inc"
#undef QUELM_TYPED
#undef QUELM_OPAQUE

struct LayerFunction {
  std::string_view name;
  void* address;
};

template <typename Function>
void* addressOf(Function* function) {
  return reinterpret_cast<void*>(function);
}

void* lookUp(const char* name);

}  // namespace

namespace functions {
namespace {

// The functions that modules call must have exactly the signature that modules call them with.
#define QUELM_TYPED(name, ...) \
  static_assert(std::is_same_v<decltype(&name), std::type_identity_t<__VA_ARGS__>>, #name);
#define QUELM_OPAQUE(name)
#include "abi/quelm_functions.inc"
#undef QUELM_TYPED
#undef QUELM_OPAQUE

void* find(std::string_view name) {
#define QUELM_TYPED(function, ...) {#function, addressOf(function)},
#define QUELM_OPAQUE(function) {#function, addressOf(function)},
  static const LayerFunction kFunctions[] = {
#include "abi/quelm_functions.inc"
  };
#undef QUELM_TYPED
#undef QUELM_OPAQUE
  const auto* found = std::ranges::find(kFunctions, name, &LayerFunction::name);
  return found == std::end(kFunctions) ? nullptr : found->address;
}

}  // namespace
}  // namespace functions

namespace {

void* lookUp(const char* name) {
  if (name == nullptr) {
    return reinterpret_cast<void*>(kQuelmApiVersion);
  }
  return functions::find(name);
}

}  // namespace
}  // namespace velmor::windowing

QuelmLookupFn quelmGetAPPAPIFunc() {
  return &velmor::windowing::lookUp;
}
