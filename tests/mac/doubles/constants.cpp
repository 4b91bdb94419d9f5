// Defined apart from their declarations, which make them constant: here they get their values when
// the runtime is up.
#include "tests/mac/doubles/constants.h"

#define CONSTANT(name)   \
  extern "C" void* name; \
  void* name;
#include "tests/mac/doubles/constants.inc"
#undef CONSTANT

namespace doubles {

void NameConstants(void* (*make)(const char* name)) {
#define CONSTANT(name) name = make(#name);
#include "tests/mac/doubles/constants.inc"
#undef CONSTANT
}

}  // namespace doubles
