// The module's pointers to the host's functions. They are zero when the module is loaded, without
// an initialiser that would have to run, and the entry fills them.
#include "abi/host_functions.h"

HINSTANCE g_hInst = nullptr;
GetMainHwndFn GetMainHwnd = nullptr;
GetExePathFn GetExePath = nullptr;
GetIniFileFn get_ini_file = nullptr;
FormatTimestrFn format_timestr = nullptr;
EnumProjectMarkersFn EnumProjectMarkers = nullptr;
void* PCM_Source_CreateFromSimple = nullptr;
EnumCurrentSinkMetadataFn EnumCurrentSinkMetadata = nullptr;
UpdateDiskCountersFn update_disk_counters = nullptr;
void* vac_createGroupsFromTab = nullptr;
LocalizeFn importedLocalizeFunc = nullptr;
void* importedLocalizeMenu = nullptr;
void* importedLocalizeInitializeDialog = nullptr;
LocalizePrepareDialogFn importedLocalizePrepareDialog = nullptr;
