#include "tests/module/mac/doubles/desk.h"

namespace doubles {

Desk& theDesk() {
  static Desk desk;
  return desk;
}

}  // namespace doubles
