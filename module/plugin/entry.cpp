// The entry: binding to the host by name, and the registration of the sink.
#include <cstring>

#include "abi/exports.h"
#include "module/plugin/sink_registration.h"

namespace {

template <class Fn>
void bind(LookupFn lookup, const char* name, Fn& pointer) {
  void* const function = lookup(name);
  memcpy(&pointer, &function, sizeof(function));
}

/// False when the host lacks a function that the module cannot do without.
bool bindHost(LookupFn lookup) {
  bind(lookup, "GetMainHwnd", GetMainHwnd);
  bind(lookup, "GetExePath", GetExePath);
  bind(lookup, "get_ini_file", get_ini_file);
  bind(lookup, "format_timestr", format_timestr);
  bind(lookup, "EnumProjectMarkers", EnumProjectMarkers);
  bind(lookup, "PCM_Source_CreateFromSimple", PCM_Source_CreateFromSimple);
  bind(lookup, "EnumCurrentSinkMetadata", EnumCurrentSinkMetadata);
  bind(lookup, "update_disk_counters", update_disk_counters);
  return GetMainHwnd && get_ini_file && GetExePath && EnumProjectMarkers && update_disk_counters;
}

void bindOptional(LookupFn lookup) {
  bind(lookup, "vac_createGroupsFromTab", vac_createGroupsFromTab);
  bind(lookup, "__localizeFunc", importedLocalizeFunc);
  bind(lookup, "__localizeMenu", importedLocalizeMenu);
  bind(lookup, "__localizeInitializeDialog", importedLocalizeInitializeDialog);
  bind(lookup, "__localizePrepareDialog", importedLocalizePrepareDialog);
}

}  // namespace

int VelmorPluginEntry(HINSTANCE instance, velmor_plugin_info_t* info) {
  g_hInst = instance;
  if (!info || info->version != kVelmorPluginVersion || !info->lookup_fn) return 0;
  if (!bindHost(info->lookup_fn)) return 0;
  bindOptional(info->lookup_fn);
  if (!info->register_fn) return 0;
  return info->register_fn("pcmsink", &mySinkRegStruct) != 0 ? 1 : 0;
}
