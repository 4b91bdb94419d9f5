// The burn dialog.
#pragma once

#include "abi/quelm_types.h"
#include "module/support/ptr_list.h"
#include "module/support/ydk_string.h"

/// Opens the burn dialog over `parent` and returns when it has ended. The paths are copied;
/// `track_names` (may be null, or shorter than the track count) and `track_starts` (image seconds)
/// must outlive the call. `total_length`: seconds. An exception of the host's passes through.
void BurnCD(HWND parent, const char* bin_path, const char* cue_path,
            YDK_PtrList<YDK_String>* track_names, const double* track_starts, int track_count,
            double total_length);

/// The state of one burn dialog; lives as long as the dialog is open.
class CDBurnInstance {
 public:
  CDBurnInstance(const char* bin_path, const char* cue_path, YDK_PtrList<YDK_String>* track_names,
                 const double* track_starts, int track_count, double total_length);
  CDBurnInstance(const CDBurnInstance&) = delete;
  CDBurnInstance& operator=(const CDBurnInstance&) = delete;

  /// The dialog's procedure; 0 for every message.
  static LRESULT staticBurnProc(HWND dialog, UINT message, WPARAM wparam, LPARAM lparam);

 private:
  void onInit(HWND dialog);
  void listTracks(HWND list);
  double trackLength(int track) const;
  static void refreshDrives(HWND dialog);
  void onCommand(HWND dialog, WPARAM wparam);
  void onBurn(HWND dialog);
  void onDestroy(HWND dialog);

  YDK_String m_cuefn;
  YDK_String m_binfn;
  const double* m_track_starts;  ///< image seconds; not owned
  int m_ntracks;
  YDK_String m_spare;  ///< always empty; like the two below it holds its place in the record
  [[maybe_unused]] int m_unused_number = 0;
  [[maybe_unused]] void* m_unused_pointers[2] = {};
  bool m_eject = false;
  YDK_PtrList<YDK_String>* m_track_names;  ///< not owned; may be null
  double m_total_len;                      ///< seconds
};
