// Defined apart from their declarations, which make them constant: here they get their values when
// the runtime is up.
#include "tests/module/mac/doubles/constants.h"

// NOLINTBEGIN(bugprone-macro-parentheses): a name that is declared takes none.
#define CONSTANT(name)   \
  extern "C" void* name; \
  void* name;
#include "tests/module/mac/doubles/constants.inc"
#undef CONSTANT
// NOLINTEND(bugprone-macro-parentheses)

namespace doubles {

void nameConstants(void* (*make)(const char* name)) {
#define CONSTANT(name) name = make(#name);
#include "tests/module/mac/doubles/constants.inc"
#undef CONSTANT
}

}  // namespace doubles
