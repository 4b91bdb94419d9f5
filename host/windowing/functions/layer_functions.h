// The functions of the windowing layer that this layer really performs, under the layer's own
// names. Each group is defined in a source of its own beside this header; where modules find them
// is in provider.h.
//
// Signatures and behaviour are those of the public Win32 functions of the same names where nothing
// else is said. One thread. A handle that is no window's makes a function do nothing and answer 0.
#pragma once

#include "abi/quelm_types.h"
#include "host/windowing/win32/win32_numbers.h"

namespace velmor::windowing::functions {

// Numbers, texts, time.
char* lstrcpyn(char* to, const char* from, int size);
/// Rounded to the nearest; -1 on overflow and for a zero denominator.
int MulDiv(int number, int numerator, int denominator);
void Sleep(int milliseconds);
/// Milliseconds of a clock that only goes forward.
UINT GetTickCount();

// Dialogs.
/// The new dialog, or null: no such resource, or `parent` is no window. A child dialog without a
/// parent is a window of its own. Hidden until `ShowWindow`.
HWND QUELM_CreateDialog(QuelmDialogResource* head, intptr_t id, HWND parent, DLGPROC procedure,
                        LPARAM init);
/// Runs until `EndDialog` and answers its result; 0 when the dialog is destroyed without it or
/// `parent` is no window, -1 when there is no such resource. The parent takes no input meanwhile.
/// What the procedure or the user throws is thrown on once the dialog has been destroyed,
/// WM_DESTROY included; what WM_DESTROY throws then is dropped.
int QUELM_DialogBox(QuelmDialogResource* head, intptr_t id, HWND parent, DLGPROC procedure,
                    LPARAM init);
void EndDialog(HWND dialog, int result);
void QUELM_MakeSetCurParms(float xscale, float yscale, float xoffset, float yoffset, HWND parent,
                           bool, bool autosize);
/// Adds the controls to the parent of the last `QUELM_MakeSetCurParms`.
void QUELM_GenerateDialogFromList(const QuelmControl* rows, int count);
int MessageBox(HWND owner, const char* text, const char* caption, int type);

// Dialog items.
HWND GetDlgItem(HWND dialog, int id);
BOOL SetDlgItemText(HWND dialog, int id, const char* text);
int GetDlgItemText(HWND dialog, int id, char* buffer, int size);
void SetDlgItemInt(HWND dialog, int id, int value, int is_signed);
/// Blanks, a minus sign only when `is_signed`, decimal digits up to the first other character.
/// 0 and untranslated when there is no digit or the number has no place in 32 bits.
int GetDlgItemInt(HWND dialog, int id, BOOL* translated, int is_signed);
void CheckDlgButton(HWND dialog, int id, int state);
int IsDlgButtonChecked(HWND dialog, int id);

// Windows.
LRESULT SendMessage(HWND window, UINT message, WPARAM wparam, LPARAM lparam);
/// Delivered before the next turn of a user at a modal dialog, or by the flush.
BOOL PostMessage(HWND window, UINT message, WPARAM wparam, LPARAM lparam);
void QUELM_MessageQueue_Flush();
void QUELM_MessageQueue_Clear();
LRESULT DefWindowProc(HWND window, UINT message, WPARAM wparam, LPARAM lparam);
BOOL IsWindow(HWND window);
BOOL DestroyWindow(HWND window);
BOOL ShowWindow(HWND window, int command);
BOOL IsWindowVisible(HWND window);
void EnableWindow(HWND window, int enable);
BOOL IsWindowEnabled(HWND window);
HWND SetFocus(HWND window);
HWND GetFocus();
HWND GetParent(HWND window);
BOOL IsChild(HWND ancestor, HWND window);
BOOL EnumChildWindows(HWND window, BOOL (*visit)(HWND, LPARAM), LPARAM param);
int GetWindowTextLength(HWND window);
int GetClassName(HWND window, char* buffer, int size);
intptr_t GetWindowLong(HWND window, int index);
/// The value before.
intptr_t SetWindowLong(HWND window, int index, intptr_t value);
void* GetProp(HWND window, const char* name);
BOOL SetProp(HWND window, const char* name, void* value);
void* RemoveProp(HWND window, const char* name);
BOOL GetWindowRect(HWND window, RECT* rect);
BOOL GetClientRect(HWND window, RECT* rect);
BOOL SetWindowPos(HWND window, HWND after, int x, int y, int width, int height, UINT flags);

// Combo boxes, by dialog and control id; they answer as the CB_ messages do.
int QUELM_CB_AddString(HWND dialog, int id, const char* text);
int QUELM_CB_InsertString(HWND dialog, int id, int row, const char* text);
int QUELM_CB_DeleteString(HWND dialog, int id, int row);
void QUELM_CB_Empty(HWND dialog, int id);
int QUELM_CB_GetNumItems(HWND dialog, int id);
int QUELM_CB_GetCurSel(HWND dialog, int id);
void QUELM_CB_SetCurSel(HWND dialog, int id, int row);
intptr_t QUELM_CB_GetItemData(HWND dialog, int id, int row);
void QUELM_CB_SetItemData(HWND dialog, int id, int row, intptr_t data);
/// The text's length, or -1; the text is cut to `size` bytes.
int QUELM_CB_GetItemText(HWND dialog, int id, int row, char* buffer, int size);
int QUELM_CB_FindString(HWND dialog, int id, int after, const char* text);

// List views.
void ListView_SetExtendedListViewStyleEx(HWND list, int mask, int style);
void ListView_InsertColumn(HWND list, int index, const LVCOLUMN* column);
BOOL ListView_DeleteColumn(HWND list, int index);
BOOL ListView_SetColumn(HWND list, int index, const LVCOLUMN* column);
BOOL ListView_GetColumn(HWND list, int index, LVCOLUMN* column);
int ListView_GetColumnWidth(HWND list, int index);
BOOL ListView_SetColumnWidth(HWND list, int index, int width);
int ListView_InsertItem(HWND list, const LVITEM* item);
bool ListView_SetItemText(HWND list, int row, int column, const char* text);
void ListView_GetItemText(HWND list, int row, int column, char* buffer, int size);
BOOL ListView_SetItem(HWND list, const LVITEM* item);
BOOL ListView_GetItem(HWND list, LVITEM* item);
BOOL ListView_DeleteItem(HWND list, int row);
BOOL ListView_DeleteAllItems(HWND list);
int ListView_GetItemCount(HWND list);
int ListView_GetNextItem(HWND list, int after, int flags);
int ListView_GetSelectedCount(HWND list);
int ListView_GetSelectionMark(HWND list);
UINT ListView_GetItemState(HWND list, int row, UINT mask);
BOOL ListView_SetItemState(HWND list, int row, UINT state, UINT mask);

// Ini files.
UINT GetPrivateProfileString(const char* section, const char* key, const char* fallback,
                             char* buffer, UINT size, const char* file);
int GetPrivateProfileInt(const char* section, const char* key, int fallback, const char* file);
BOOL WritePrivateProfileString(const char* section, const char* key, const char* value,
                               const char* file);

}  // namespace velmor::windowing::functions
