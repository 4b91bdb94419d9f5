#include "module/plugin/dialog_list.h"

#include <initializer_list>

#include "abi/localisation.h"
#include "module/resources/dialogs.h"

QuelmDialogResource* QUELM_curmodule_dialogresource_head = nullptr;

DialogListInitializer::DialogListInitializer() {
  for (QuelmDialogResource* dialog : {&g_isosink_cfg_dialog, &g_burn_dialog, &g_doburn_dialog}) {
    dialog->next = QUELM_curmodule_dialogresource_head;
    QUELM_curmodule_dialogresource_head = dialog;
  }
}
