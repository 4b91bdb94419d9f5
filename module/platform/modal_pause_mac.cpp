#include "module/platform/modal_pause_mac.h"

#include "abi/quelm_functions.h"

void platformModalPause() {
  Sleep(1);
}
