#include "tests/fake_host/plugin_host.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <cstring>

namespace fake_host {

namespace {

PluginHost* current_host = nullptr;

int host_calls = 0;

// Stands in every function the module calls.
struct HostCall {
  HostCall() { ++host_calls; }
  ~HostCall() { --host_calls; }
  HostCall(const HostCall&) = delete;
  HostCall& operator=(const HostCall&) = delete;
};

// Indices are the host's own affair but for the first: these cannot be guessed by counting.
constexpr int kFirstIndex = 0;
int IndexAfter(size_t entry) {
  return -(static_cast<int>(entry) * 7 + 1001);
}
std::optional<size_t> EntryAt(int index) {
  if (index == kFirstIndex) return 0;
  if (index > -1001 || (-index - 1001) % 7 != 0) return std::nullopt;
  return static_cast<size_t>((-index - 1001) / 7) + 1;
}

}  // namespace

bool InHostCall() {
  return host_calls > 0;
}

Mark Marker(double position, std::optional<std::string> name) {
  return {.is_region = false, .position = position, .end = 0.0, .name = std::move(name)};
}

Mark Region(double position, double end, std::optional<std::string> name) {
  return {.is_region = true, .position = position, .end = end, .name = std::move(name)};
}

// The functions as the module calls them; plain functions, so they find the host by `current_host`.
struct HostFunctions {
  static HWND GetMainHwnd() {
    const HostCall in_call;
    current_host->journal.emplace_back("GetMainHwnd");
    return current_host->main_window;
  }
  static const char* GetExePath() {
    const HostCall in_call;
    current_host->journal.emplace_back("GetExePath");
    return "/opt/velmor";
  }
  static const char* GetIniFile() {
    const HostCall in_call;
    current_host->journal.emplace_back("get_ini_file");
    return current_host->ini_file.c_str();
  }
  static void FormatTimestr(double seconds, char* buf, int size) {
    const HostCall in_call;
    current_host->journal.emplace_back("format_timestr");
    std::snprintf(buf, static_cast<size_t>(size), "%.3f", seconds);
  }

  static int EnumProjectMarkers(int idx, bool* isrgn, double* pos, double* rgnend,
                                const char** name, int* number) {
    const HostCall in_call;
    if (current_host->on_enumerate_markers) current_host->on_enumerate_markers();
    current_host->marker_calls.push_back({idx, isrgn != nullptr, pos != nullptr, rgnend != nullptr,
                                          name != nullptr, number != nullptr});
    const std::optional<size_t> entry = EntryAt(idx);
    if (!entry) {
      ADD_FAILURE() << "the host never gave out marker index " << idx;
      return 0;
    }
    if (*entry >= current_host->marks.size()) return 0;
    const Mark& mark = current_host->marks[*entry];
    if (isrgn != nullptr) *isrgn = mark.is_region;
    if (pos != nullptr) *pos = mark.position;
    if (rgnend != nullptr) *rgnend = mark.end;
    const char* lent = current_host->Lend(current_host->lent_name_, mark.name);
    if (name != nullptr) *name = lent;
    if (number != nullptr) *number = static_cast<int>(*entry) + 1;
    return IndexAfter(*entry);
  }

  static const char* EnumCurrentSinkMetadata(int idx, const char** key) {
    const HostCall in_call;
    current_host->metadata_calls.push_back(idx);
    if (idx < 0 || static_cast<size_t>(idx) >= current_host->metadata.size()) return nullptr;
    const MetadataEntry& entry = current_host->metadata[static_cast<size_t>(idx)];
    if (key != nullptr) *key = current_host->Lend(current_host->lent_key_, entry.key);
    return current_host->Lend(current_host->lent_value_, entry.value);
  }

  static void UpdateDiskCounters(int read, int write) {
    const HostCall in_call;
    current_host->disk_counters.emplace_back(read, write);
  }

  static const char* Localize(const char* text, const char* section, int flags) {
    const HostCall in_call;
    current_host->localize_calls.push_back({text, section, flags});
    const auto found = current_host->translations.find(text);
    return found == current_host->translations.end() ? text : found->second.c_str();
  }

  static DLGPROC PrepareDialog(const char* prefix, HINSTANCE instance, int resid, DLGPROC proc,
                               LPARAM init, void** scratch, int slots) {
    const HostCall in_call;
    std::optional<std::string> fifth;
    if (slots == 5 && scratch[4] != nullptr) fifth = static_cast<const char*>(scratch[4]);
    current_host->prepare_calls.push_back(
        {prefix, instance, resid, proc, init, scratch, slots, fifth});
    if (current_host->on_prepare_dialog)
      current_host->on_prepare_dialog(current_host->prepare_calls.back());
    return current_host->prepared_procedure;
  }

  static int NotCalled() {
    const HostCall in_call;
    ADD_FAILURE() << "the module called a host function that it only keeps";
    return 0;
  }

  static void* Lookup(const char* name) {
    const HostCall in_call;
    if (current_host == nullptr || name == nullptr) {
      ADD_FAILURE() << "a lookup without a host or without a name";
      return nullptr;
    }
    current_host->lookups.emplace_back(name);
    current_host->journal.push_back(std::string("lookup ") + name);
    if (current_host->withheld.count(name) != 0) return nullptr;
    const auto found = Table().find(name);
    return found == Table().end() ? nullptr : found->second;
  }

  static int Register(const char* kind, void* record) {
    const HostCall in_call;
    current_host->journal.push_back(std::string("register ") + kind);
    current_host->registrations.emplace_back(kind, record);
    return current_host->answer_to_registration;
  }

  template <class Wanted>
  static void* As(Wanted function) {
    return reinterpret_cast<void*>(function);
  }

  static const std::map<std::string, void*>& Table() {
    static const std::map<std::string, void*> table = {
        {"GetMainHwnd", As<GetMainHwndFn>(GetMainHwnd)},
        {"GetExePath", As<GetExePathFn>(GetExePath)},
        {"get_ini_file", As<GetIniFileFn>(GetIniFile)},
        {"format_timestr", As<FormatTimestrFn>(FormatTimestr)},
        {"EnumProjectMarkers", As<EnumProjectMarkersFn>(EnumProjectMarkers)},
        {"PCM_Source_CreateFromSimple", As<int (*)()>(NotCalled)},
        {"EnumCurrentSinkMetadata", As<EnumCurrentSinkMetadataFn>(EnumCurrentSinkMetadata)},
        {"update_disk_counters", As<UpdateDiskCountersFn>(UpdateDiskCounters)},
        {"vac_createGroupsFromTab", As<int (*)()>(NotCalled)},
        {"__localizeFunc", As<LocalizeFn>(Localize)},
        {"__localizeMenu", As<int (*)()>(NotCalled)},
        {"__localizeInitializeDialog", As<int (*)()>(NotCalled)},
        {"__localizePrepareDialog", As<LocalizePrepareDialogFn>(PrepareDialog)},
    };
    return table;
  }
};

PluginHost::PluginHost() : main_window(&own_window_) {
  if (current_host != nullptr) ADD_FAILURE() << "two hosts in one process";
  current_host = this;
}

PluginHost::~PluginHost() {
  current_host = nullptr;
}

velmor_plugin_info_t PluginHost::Info() const {
  return {kVelmorPluginVersion, main_window, HostFunctions::Register, HostFunctions::Lookup};
}

SinkRegistration* PluginHost::sink_registration() const {
  if (registrations.empty()) return nullptr;
  return static_cast<SinkRegistration*>(registrations.back().second);
}

const char* PluginHost::Lend(std::unique_ptr<std::string>& slot,
                             const std::optional<std::string>& text) {
  if (slot != nullptr) slot->assign(slot->size(), '?');  // seen by a reader that kept it
  slot = text ? std::make_unique<std::string>(*text) : nullptr;
  return slot == nullptr ? nullptr : slot->c_str();
}

}  // namespace fake_host
