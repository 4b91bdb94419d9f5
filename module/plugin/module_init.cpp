// What runs when the host loads the module, in this order. Both objects stand in one file because
// only there does the language itself fix the order, whatever the object format; nothing else in
// the module has a static initialiser.
#include "abi/exports.h"
#include "module/plugin/dialog_list.h"
#include "module/plugin/quelm_modstub.h"

namespace {

QuelmAPPInitializer g_windowing_import;
DialogListInitializer g_dialog_list;

}  // namespace

int QUELM_dllMain() {
  return 1;
}
