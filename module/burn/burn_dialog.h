// The burn dialog.
#pragma once

#include "abi/quelm_types.h"
#include "module/support/ptr_list.h"
#include "module/support/ydk_string.h"

/// Opens the burn dialog over `parent` and returns when it has ended. The paths are copied;
/// `trackNames` (may be null, or shorter than the track count) and `trackStarts` (image seconds)
/// must outlive the call. `totalLength`: seconds. An exception of the host's passes through.
void BurnCD(HWND parent, const char* binPath, const char* cuePath,
            YDK_PtrList<YDK_String>* trackNames, const double* trackStarts, int trackCount,
            double totalLength);

/// The state of one burn dialog; lives as long as the dialog is open.
class CDBurnInstance {
 public:
  CDBurnInstance(const char* binPath, const char* cuePath, YDK_PtrList<YDK_String>* trackNames,
                 const double* trackStarts, int trackCount, double totalLength);
  CDBurnInstance(const CDBurnInstance&) = delete;
  CDBurnInstance& operator=(const CDBurnInstance&) = delete;

  /// The dialog's procedure; 0 for every message.
  static LRESULT staticBurnProc(HWND dialog, UINT message, WPARAM wparam, LPARAM lparam);

 private:
  void OnInit(HWND dialog);
  void ListTracks(HWND list);
  double TrackLength(int track) const;
  static void RefreshDrives(HWND dialog);
  void OnCommand(HWND dialog, WPARAM wparam);
  void OnBurn(HWND dialog);
  void OnDestroy(HWND dialog);

  YDK_String m_cuefn;
  YDK_String m_binfn;
  const double* m_track_starts;  ///< image seconds; not owned
  int m_ntracks;
  YDK_String m_spare;  ///< always empty
  [[maybe_unused]] int m_unused_number = 0;
  [[maybe_unused]] void* m_unused_pointers[2] = {};
  bool m_eject = false;
  YDK_PtrList<YDK_String>* m_track_names;  ///< not owned; may be null
  double m_total_len;                      ///< seconds
};
