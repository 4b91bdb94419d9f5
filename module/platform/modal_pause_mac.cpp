#include "module/platform/modal_pause_mac.h"

#include "abi/quelm_functions.h"

void platform_modal_pause() {
  Sleep(1);
}
