#include "tests/module/mac/doubles/framework_state.h"

namespace doubles {

FrameworkState& theFrameworks() {
  static FrameworkState state;
  return state;
}

}  // namespace doubles
