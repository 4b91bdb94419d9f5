// Numbers of the public Win32 API that the layer answers beyond those a module needs.
#pragma once

#include "abi/quelm_types.h"

namespace velmor::windowing {

inline constexpr UINT WM_SETTEXT = 0x000C;
inline constexpr UINT WM_GETTEXT = 0x000D;
inline constexpr UINT WM_GETTEXTLENGTH = 0x000E;
inline constexpr UINT WM_CLOSE = 0x0010;

inline constexpr UINT BM_GETCHECK = 0x00F0;
inline constexpr UINT BM_SETCHECK = 0x00F1;
inline constexpr UINT BM_CLICK = 0x00F5;

inline constexpr UINT CB_DELETESTRING = 0x0144;
inline constexpr UINT CB_GETCOUNT = 0x0146;
inline constexpr UINT CB_GETLBTEXT = 0x0148;
inline constexpr UINT CB_GETLBTEXTLEN = 0x0149;
inline constexpr UINT CB_INSERTSTRING = 0x014A;
inline constexpr UINT CB_FINDSTRING = 0x014C;
inline constexpr UINT CB_SELECTSTRING = 0x014D;
inline constexpr UINT CB_FINDSTRINGEXACT = 0x0158;
inline constexpr int CB_ERR = -1;

inline constexpr int BN_CLICKED = 0;
inline constexpr int EN_CHANGE = 0x0300;
inline constexpr int EN_UPDATE = 0x0400;

inline constexpr int BST_UNCHECKED = 0;
inline constexpr int BST_CHECKED = 1;
inline constexpr int BST_INDETERMINATE = 2;

// Button types: the low four bits of a button's style.
inline constexpr int kButtonTypeMask = 0xF;
inline constexpr int BS_PUSHBUTTON = 0x0;
inline constexpr int BS_DEFPUSHBUTTON = 0x1;
inline constexpr int BS_CHECKBOX = 0x2;
inline constexpr int BS_RADIOBUTTON = 0x4;
inline constexpr int BS_3STATE = 0x5;
inline constexpr int BS_AUTO3STATE = 0x6;
inline constexpr int BS_GROUPBOX = 0x7;
inline constexpr int BS_AUTORADIOBUTTON = 0x9;
inline constexpr int WS_GROUP = 0x20000;
inline constexpr int ES_READONLY = 0x800;

inline constexpr int GWL_ID = -12;
inline constexpr int GWL_STYLE = -16;
inline constexpr int GWL_EXSTYLE = -20;

inline constexpr UINT LVIF_PARAM = 0x4;
inline constexpr UINT LVIF_STATE = 0x8;
inline constexpr UINT LVIS_FOCUSED = 0x1;
inline constexpr UINT LVIS_SELECTED = 0x2;
inline constexpr int LVNI_FOCUSED = 0x1;
inline constexpr int LVNI_SELECTED = 0x2;
inline constexpr UINT LVCF_FMT = 0x1;

inline constexpr int SW_HIDE = 0;
inline constexpr UINT SWP_NOSIZE = 0x1;
inline constexpr UINT SWP_NOMOVE = 0x2;

// Message boxes: the kind is the low four bits of the type.
inline constexpr int kMessageBoxKindMask = 0xF;
inline constexpr int MB_OKCANCEL = 1;
inline constexpr int MB_ABORTRETRYIGNORE = 2;
inline constexpr int MB_YESNOCANCEL = 3;
inline constexpr int MB_YESNO = 4;
inline constexpr int MB_RETRYCANCEL = 5;
inline constexpr int kIdabort = 3;
inline constexpr int kIdretry = 4;
inline constexpr int kIdignore = 5;
inline constexpr int kIdyes = 6;
inline constexpr int kIdno = 7;

/// The public RECT.
struct RECT {
  int left, top, right, bottom;
};

}  // namespace velmor::windowing
