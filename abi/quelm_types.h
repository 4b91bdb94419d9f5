// Types, messages and records of QUELM, the host's windowing layer, as they cross the binary
// interface.
//
// The numbers are those of the public Win32 API, which the layer follows.
#pragma once

#include <cstddef>
#include <cstdint>

using HWND = void*;
using HINSTANCE = void*;
using UINT = unsigned int;
using WPARAM = intptr_t;
using LPARAM = intptr_t;
using LRESULT = intptr_t;
using BOOL = int;
using DLGPROC = LRESULT (*)(HWND, UINT, WPARAM, LPARAM);

// Messages (Win32).
inline constexpr UINT WM_DESTROY = 0x0002;
inline constexpr UINT WM_INITDIALOG = 0x0110;
inline constexpr UINT WM_COMMAND = 0x0111;
inline constexpr UINT WM_USER = 0x0400;
inline constexpr UINT CB_ADDSTRING = 0x0143;
inline constexpr UINT CB_GETCURSEL = 0x0147;
inline constexpr UINT CB_RESETCONTENT = 0x014B;
inline constexpr UINT CB_SETCURSEL = 0x014E;
inline constexpr UINT CB_GETITEMDATA = 0x0150;
inline constexpr UINT CB_SETITEMDATA = 0x0151;

// Notification codes and common control ids (Win32).
inline constexpr int CBN_SELCHANGE = 1;
inline constexpr int IDOK = 1;
inline constexpr int IDCANCEL = 2;

// Styles (Win32).
inline constexpr int ES_AUTOHSCROLL = 0x80;
inline constexpr int CBS_DROPDOWNLIST = 0x3;
inline constexpr int BS_AUTOCHECKBOX = 0x3;
inline constexpr int LVS_REPORT = 0x1;
inline constexpr int WS_TABSTOP = 0x10000;
inline constexpr int WS_VSCROLL = 0x200000;
inline constexpr int LVS_EX_FULLROWSELECT = 0x20;

inline constexpr int GWL_USERDATA = -21;
inline constexpr int MB_OK = 0;

inline constexpr UINT LVCF_WIDTH = 0x2;
inline constexpr UINT LVCF_TEXT = 0x4;
inline constexpr UINT LVIF_TEXT = 0x1;

/// A list view's column.
struct LVCOLUMN {
  UINT mask;
  int fmt;
  int cx;
  char* text;
  int text_max;
  int sub_item;
};
static_assert(sizeof(LVCOLUMN) == 32 && offsetof(LVCOLUMN, text) == 16);

/// A list view's row, or one cell of it.
struct LVITEM {
  UINT mask;
  int item;
  int sub_item;
  UINT state;
  UINT state_mask;
  char* text;
  int text_max;
  int image;
  LPARAM param;
};
static_assert(sizeof(LVITEM) == 48 && offsetof(LVITEM, text) == 24);

/// One row of a dialog template, in dialog units. Two shapes:
/// a layer-classed control has the layer's class marker first (`kQuelmLabel`, …) and caption and id
/// second; a generic control has caption and id first, then the window class and its style.
struct QuelmControl {
  const char* first_text;
  int first_value;
  const char* second_text;
  int second_value;
  int x, y, w, h;
  int extra_style;
};
static_assert(sizeof(QuelmControl) == 48 && offsetof(QuelmControl, first_value) == 8 &&
              offsetof(QuelmControl, second_text) == 16 &&
              offsetof(QuelmControl, second_value) == 24 && offsetof(QuelmControl, x) == 28 &&
              offsetof(QuelmControl, extra_style) == 44);

inline constexpr const char* kQuelmLabel = "__QUELM_LABEL";
inline constexpr const char* kQuelmEdit = "__QUELM_EDIT";
inline constexpr const char* kQuelmCombo = "__QUELM_COMBO";
inline constexpr const char* kQuelmButton = "__QUELM_BUTTON";

/// Window kind bits of a dialog resource that the module knows; the other bits are the layer's.
inline constexpr int kQuelmChildDialog = 1;
inline constexpr int kQuelmNoAutoSize = 8;

/// One dialog template of a module, a link of the module's list. Owned by the module.
struct QuelmDialogResource {
  intptr_t id;
  const char* title;
  int flags;
  void (*create)(HWND window, int flags);
  int width;   ///< pixels
  int height;  ///< pixels
  QuelmDialogResource* next;
};
static_assert(sizeof(QuelmDialogResource) == 48 && offsetof(QuelmDialogResource, title) == 8 &&
              offsetof(QuelmDialogResource, flags) == 16 &&
              offsetof(QuelmDialogResource, create) == 24 &&
              offsetof(QuelmDialogResource, width) == 32 &&
              offsetof(QuelmDialogResource, height) == 36 &&
              offsetof(QuelmDialogResource, next) == 40);
