// The host's side of the plug-in interface: functions by name, markers, metadata, translations.
#pragma once

#include <array>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "abi/host_functions.h"
#include "abi/sink_registration.h"

namespace fake_host {

/// A project marker, or a region. Times are project seconds.
struct Mark {
  bool is_region = false;
  double position = 0.0;
  double end = 0.0;
  std::optional<std::string> name = std::string();  ///< nullopt: the host gives a null name
};

Mark marker(double position, std::optional<std::string> name = std::string());
Mark region(double position, double end, std::optional<std::string> name = std::string());

/// One entry of the render's metadata.
struct MetadataEntry {
  std::optional<std::string> key;  ///< nullopt: the host leaves the key null
  std::string value;
};

/// A call of `EnumProjectMarkers`: which outputs were asked for.
struct MarkerCall {
  int index = 0;
  bool wants_region_flag = false;
  bool wants_position = false;
  bool wants_region_end = false;
  bool wants_name = false;
  bool wants_number = false;
};

/// A call of `format_timestr`: the time, and the size of the buffer that it may fill.
struct FormatTimeCall {
  double seconds = 0.0;
  int size = 0;
  bool operator==(const FormatTimeCall&) const = default;
};

struct LocalizeCall {
  std::string text;
  std::string section;
  int flags = 0;
  bool operator==(const LocalizeCall&) const = default;
};

struct PrepareDialogCall {
  std::string prefix;
  HINSTANCE instance = nullptr;
  int resource_id = 0;
  DLGPROC procedure = nullptr;
  LPARAM init = 0;
  void** scratch = nullptr;  ///< not to be followed after the call
  int slots = 0;
  std::optional<std::string> fifth_slot;  ///< its text; nullopt for a null slot
};

/// Whether one of the host's functions is running, called by the module.
bool inHostCall();

/// While it lives it is the host of the process: one at a time. Everything may be scripted between
/// calls of the module, and everything the module calls is recorded in order.
class PluginHost {
 public:
  PluginHost();
  ~PluginHost();
  PluginHost(const PluginHost&) = delete;
  PluginHost& operator=(const PluginHost&) = delete;

  /// The host does not offer this function.
  void withhold(const std::string& name) { withheld.insert(name); }
  /// The record a host of the right version gives to the entry.
  velmor_plugin_info_t info() const;

  // Script.
  std::set<std::string> withheld;
  int answer_to_registration = 1;
  HWND main_window = nullptr;  ///< an address of the host's own by default
  std::string ini_file;
  std::vector<Mark> marks;  ///< in the order the host enumerates them
  std::vector<MetadataEntry> metadata;
  std::map<std::string, std::string> translations;  ///< by text; others stay as they are
  DLGPROC prepared_procedure = nullptr;             ///< what `__localizePrepareDialog` returns
  /// Called at the start of every `EnumProjectMarkers`, for a host that misbehaves.
  std::function<void()> on_enumerate_markers;
  /// Called in every `__localizePrepareDialog`, while the caller's blocks still stand.
  std::function<void(const PrepareDialogCall&)> on_prepare_dialog;

  // Record.
  std::vector<std::string> lookups;  ///< names the entry asked for
  std::vector<std::string> journal;  ///< "lookup NAME", "register KIND", "GetMainHwnd", …
  std::vector<std::pair<std::string, void*>> registrations;
  std::vector<std::pair<int, int>> disk_counters;
  std::vector<MarkerCall> marker_calls;
  std::vector<int> metadata_calls;
  std::vector<FormatTimeCall> format_time_calls;
  std::vector<LocalizeCall> localize_calls;
  std::vector<PrepareDialogCall> prepare_calls;

  /// The sink's record as registered; null when none was.
  SinkRegistration* sinkRegistration() const;

 private:
  friend struct HostFunctions;
  /// Hands out `text` in storage that the next call takes away.
  const char* lend(std::unique_ptr<std::string>& slot, const std::optional<std::string>& text);

  int m_own_window = 0;
  std::unique_ptr<std::string> m_lent_name;
  std::unique_ptr<std::string> m_lent_key;
  std::unique_ptr<std::string> m_lent_value;
};

}  // namespace fake_host
