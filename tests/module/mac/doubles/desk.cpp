#include "tests/module/mac/doubles/desk.h"

namespace doubles {

Desk& TheDesk() {
  static Desk desk;
  return desk;
}

}  // namespace doubles
