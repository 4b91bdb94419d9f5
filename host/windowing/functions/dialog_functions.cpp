#include <algorithm>

#include "host/windowing/desktop/desktop.h"
#include "host/windowing/desktop/messages.h"
#include "host/windowing/dialogs/control_rows.h"
#include "host/windowing/dialogs/dialog_user.h"
#include "host/windowing/functions/layer_functions.h"

namespace velmor::windowing {
namespace {

/// Where `QUELM_GenerateDialogFromList` puts its controls.
struct Generation {
  Scale scale;
  HWND parent = nullptr;
  bool autosize = false;
};

Generation& generation() {
  static Generation current;
  return current;
}

const QuelmDialogResource* findResource(const QuelmDialogResource* head, intptr_t id) {
  while (head != nullptr && head->id != id) {
    head = head->next;
  }
  return head;
}

bool canBeParent(HWND parent) {
  const auto window = Desktop::the().find(parent);
  return parent == nullptr || (window && !window->being_destroyed);
}

bool takesFocus(const Window& control) {
  switch (control.kind) {
    case WindowKind::kEdit:
    case WindowKind::kComboBox:
    case WindowKind::kPushButton:
    case WindowKind::kCheckBox:
    case WindowKind::kRadioButton:
    case WindowKind::kListView:
      return control.enabled && control.visible;
    default:
      return false;
  }
}

HWND firstFocus(const Window& dialog) {
  for (const HWND handle : dialog.children) {
    const auto control = Desktop::the().find(handle);
    if (control->child && takesFocus(*control)) {
      return handle;
    }
  }
  return nullptr;
}

/// Destroys a dialog after an exception; that one is thrown on, so one from WM_DESTROY is dropped.
void destroyQuietly(HWND dialog) {
  try {
    Desktop::the().destroy(dialog);
  } catch (...) {  // NOLINT(bugprone-empty-catch): what was thrown first tells what went wrong
  }
}

struct Opening {
  DLGPROC procedure;
  LPARAM init;
  bool modal;
};

/// Builds the controls and sends WM_INITDIALOG. The procedure may destroy the dialog there.
void fill(Window& dialog, const QuelmDialogResource& resource, const Opening& opening) {
  if (resource.create != nullptr) {
    resource.create(dialog.handle, resource.flags);
  }
  generation() = {};
  dialog.procedure = opening.procedure;
  const HWND focus = firstFocus(dialog);
  if (opening.modal && focus != nullptr) {
    Desktop::the().setFocus(focus);
  }
  sendMessage(dialog.handle, WM_INITDIALOG, reinterpret_cast<WPARAM>(focus), opening.init);
}

std::shared_ptr<Window> openDialog(const QuelmDialogResource& resource, HWND parent,
                                   const Opening& opening) {
  auto dialog = Desktop::the().create(WindowKind::kDialog, parent);
  dialog->child = !opening.modal && parent != nullptr && (resource.flags & kQuelmChildDialog) != 0;
  dialog->text = resource.title == nullptr ? "" : resource.title;
  dialog->class_name = "#32770";
  dialog->place = {0, 0, resource.width, resource.height};
  dialog->resource_id = resource.id;
  dialog->modal = opening.modal;
  dialog->visible = false;
  try {
    fill(*dialog, resource, opening);
  } catch (...) {
    destroyQuietly(dialog->handle);
    throw;
  }
  return dialog;
}

bool isOpen(const Window& dialog) {
  return !dialog.ended && Desktop::the().exists(dialog.handle);
}

/// Gives the user a turn at the dialog; without a user, or when that one gives up, the dialog ends.
void takeTurn(Window& dialog, bool first) {
  DialogUser* user = Desktop::the().user();
  OpenDialog seen(dialog.handle);
  if (user != nullptr && first) {
    user->dialogOpened(seen);
  }
  if (!isOpen(dialog) || (user != nullptr && user->useDialog(seen))) {
    return;
  }
  if (isOpen(dialog)) {
    pressEscape(dialog.handle);
  }
  if (isOpen(dialog)) {
    functions::EndDialog(dialog.handle, IDCANCEL);
  }
}

/// Keeps the owner of a modal dialog from input, and the focus where it was afterwards.
class OwnerWaits {
 public:
  explicit OwnerWaits(HWND owner) : m_focus(Desktop::the().focus()) {
    const auto window = Desktop::the().find(owner);
    if (window && window->enabled) {
      window->enabled = false;
      m_owner = window;
    }
  }
  ~OwnerWaits() {
    if (m_owner) {
      m_owner->enabled = true;
    }
    Desktop::the().setFocus(m_focus);
  }
  OwnerWaits(const OwnerWaits&) = delete;
  OwnerWaits& operator=(const OwnerWaits&) = delete;

 private:
  std::shared_ptr<Window> m_owner;
  HWND m_focus;
};

void run(Window& dialog) {
  dialog.visible = true;
  bool first = true;
  while (isOpen(dialog)) {
    Desktop::the().deliverPosted();
    if (isOpen(dialog)) {
      takeTurn(dialog, first);
    }
    first = false;
  }
}

}  // namespace

namespace functions {

HWND QUELM_CreateDialog(QuelmDialogResource* head, intptr_t id, HWND parent, DLGPROC procedure,
                        LPARAM init) {
  const QuelmDialogResource* resource = findResource(head, id);
  if (resource == nullptr || !canBeParent(parent)) {
    return nullptr;
  }
  const auto dialog = openDialog(*resource, parent, {procedure, init, false});
  return Desktop::the().exists(dialog->handle) ? dialog->handle : nullptr;
}

int QUELM_DialogBox(QuelmDialogResource* head, intptr_t id, HWND parent, DLGPROC procedure,
                    LPARAM init) {
  const QuelmDialogResource* resource = findResource(head, id);
  if (resource == nullptr) {
    return -1;
  }
  if (!canBeParent(parent)) {
    return 0;
  }
  const OwnerWaits waits(parent);
  const auto dialog = openDialog(*resource, parent, {procedure, init, true});
  try {
    run(*dialog);
  } catch (...) {
    destroyQuietly(dialog->handle);
    throw;
  }
  Desktop::the().destroy(dialog->handle);
  return dialog->result;
}

void EndDialog(HWND handle, int result) {
  const auto dialog = Desktop::the().find(handle);
  if (!dialog || dialog->kind != WindowKind::kDialog || dialog->ended) {
    return;
  }
  dialog->visible = false;
  if (dialog->modal) {
    dialog->ended = true;
    dialog->result = result;
  }
}

void QUELM_MakeSetCurParms(float xscale, float yscale, float xoffset, float yoffset, HWND parent,
                           bool /*unused*/, bool autosize) {
  generation() = {{xscale, yscale, xoffset, yoffset}, parent, autosize};
}

void QUELM_GenerateDialogFromList(const QuelmControl* rows, int count) {
  const Generation current = generation();
  const auto dialog = Desktop::the().find(current.parent);
  if (!dialog || rows == nullptr) {
    return;
  }
  for (int row = 0; row < count; ++row) {
    makeControl(rows[row], current.scale, dialog->handle);
  }
  if (!current.autosize) {
    return;
  }
  for (const HWND handle : dialog->children) {
    const auto control = Desktop::the().find(handle);
    if (!control->child) {
      continue;  // a dialog that this one owns does not lie inside it
    }
    const WindowRectangle& place = control->place;
    dialog->place.width = std::max(dialog->place.width, place.x + place.width);
    dialog->place.height = std::max(dialog->place.height, place.y + place.height);
  }
}

}  // namespace functions
}  // namespace velmor::windowing
