// The module's pointers to the windowing layer's functions. They hold nothing until the import
// (module/plugin/quelm_modstub.h), which is the first code of the module that runs.
#include "abi/quelm_functions.h"

#define QUELM_TYPED(name, ...) std::type_identity_t<__VA_ARGS__> name;
#define QUELM_OPAQUE(name) QuelmAnyFn name;
#include "abi/quelm_functions.inc"
#undef QUELM_TYPED
#undef QUELM_OPAQUE
