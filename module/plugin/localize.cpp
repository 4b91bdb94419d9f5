#include <cstdio>

#include "abi/host_functions.h"
#include "abi/localisation.h"
#include "abi/quelm_functions.h"

const char* __localizeFunc(const char* text, const char* section, int flags) {
  return importedLocalizeFunc ? importedLocalizeFunc(text, section, flags) : text;
}

intptr_t __localizeDialog(HINSTANCE instance, int resid, HWND parent, DLGPROC proc, LPARAM init,
                          int mode) {
  char section[256];
  void* scratch[kLocalizeSlots] = {};
  if (mode == kModalDialog) {
    snprintf(section, sizeof(section), "%.100s%d", kDialogSectionPrefix, resid);
    scratch[kLocalizeSlots - 1] = section;
  }
  if (importedLocalizePrepareDialog) {
    const DLGPROC prepared = importedLocalizePrepareDialog(kDialogSectionPrefix, instance, resid,
                                                           proc, init, scratch, kLocalizeSlots);
    if (prepared) {
      proc = prepared;
      init = reinterpret_cast<LPARAM>(scratch);
    }
  }
  QuelmDialogResource* const dialogs = QUELM_curmodule_dialogresource_head;
  switch (mode) {
    case kModelessDialog:
      return reinterpret_cast<intptr_t>(QUELM_CreateDialog(dialogs, resid, parent, proc, init));
    case kModalDialog:
      return QUELM_DialogBox(dialogs, resid, parent, proc, init);
    default:
      return 0;
  }
}
