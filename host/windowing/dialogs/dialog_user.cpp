#include "host/windowing/dialogs/dialog_user.h"

#include "host/windowing/desktop/desktop.h"
#include "host/windowing/win32/win32_numbers.h"

namespace velmor::windowing {

std::vector<int> messageBoxButtons(int type) {
  switch (type & kMessageBoxKindMask) {
    case MB_OKCANCEL:
      return {IDOK, IDCANCEL};
    case MB_ABORTRETRYIGNORE:
      return {kIdabort, kIdretry, kIdignore};
    case MB_YESNOCANCEL:
      return {kIdyes, kIdno, IDCANCEL};
    case MB_YESNO:
      return {kIdyes, kIdno};
    case MB_RETRYCANCEL:
      return {kIdretry, IDCANCEL};
    default:
      return {IDOK};
  }
}

ScopedDialogUser::ScopedDialogUser(DialogUser& user) : m_before(Desktop::the().user()) {
  Desktop::the().setUser(&user);
}

ScopedDialogUser::~ScopedDialogUser() {
  Desktop::the().setUser(m_before);
}

}  // namespace velmor::windowing
