#include "tests/fake_host/plugin_host.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <cstring>

namespace fake_host {

namespace {

PluginHost* g_current_host = nullptr;

int g_host_calls = 0;

// Stands in every function the module calls.
struct HostCall {
  HostCall() { ++g_host_calls; }
  ~HostCall() { --g_host_calls; }
  HostCall(const HostCall&) = delete;
  HostCall& operator=(const HostCall&) = delete;
};

// Indices are the host's own affair but for the first: these cannot be guessed by counting.
constexpr int kFirstIndex = 0;
int indexAfter(size_t entry) {
  return -(static_cast<int>(entry) * 7 + 1001);
}
std::optional<size_t> entryAt(int index) {
  if (index == kFirstIndex) return 0;
  if (index > -1001 || (-index - 1001) % 7 != 0) return std::nullopt;
  return static_cast<size_t>((-index - 1001) / 7) + 1;
}

}  // namespace

bool inHostCall() {
  return g_host_calls > 0;
}

Mark marker(double position, std::optional<std::string> name) {
  return {.is_region = false, .position = position, .end = 0.0, .name = std::move(name)};
}

Mark region(double position, double end, std::optional<std::string> name) {
  return {.is_region = true, .position = position, .end = end, .name = std::move(name)};
}

// The functions as the module calls them; plain functions, so they find the host by
// `g_current_host`.
struct HostFunctions {
  static HWND getMainHwnd() {
    const HostCall in_call;
    g_current_host->journal.emplace_back("GetMainHwnd");
    return g_current_host->main_window;
  }
  static const char* getExePath() {
    const HostCall in_call;
    g_current_host->journal.emplace_back("GetExePath");
    return "/opt/velmor";
  }
  static const char* getIniFile() {
    const HostCall in_call;
    g_current_host->journal.emplace_back("get_ini_file");
    return g_current_host->ini_file.c_str();
  }
  static void formatTimestr(double seconds, char* buf, int size) {
    const HostCall in_call;
    g_current_host->journal.emplace_back("format_timestr");
    g_current_host->format_time_calls.push_back({seconds, size});
    std::snprintf(buf, static_cast<size_t>(size), "%.3f", seconds);
  }

  static int enumProjectMarkers(int idx, bool* isrgn, double* pos, double* rgnend,
                                const char** name, int* number) {
    const HostCall in_call;
    if (g_current_host->on_enumerate_markers) g_current_host->on_enumerate_markers();
    g_current_host->marker_calls.push_back({idx, isrgn != nullptr, pos != nullptr,
                                            rgnend != nullptr, name != nullptr, number != nullptr});
    const std::optional<size_t> entry = entryAt(idx);
    if (!entry) {
      ADD_FAILURE() << "the host never gave out marker index " << idx;
      return 0;
    }
    if (*entry >= g_current_host->marks.size()) return 0;
    const Mark& mark = g_current_host->marks[*entry];
    if (isrgn != nullptr) *isrgn = mark.is_region;
    if (pos != nullptr) *pos = mark.position;
    if (rgnend != nullptr) *rgnend = mark.end;
    const char* lent = g_current_host->lend(g_current_host->m_lent_name, mark.name);
    if (name != nullptr) *name = lent;
    if (number != nullptr) *number = static_cast<int>(*entry) + 1;
    return indexAfter(*entry);
  }

  static const char* enumCurrentSinkMetadata(int idx, const char** key) {
    const HostCall in_call;
    g_current_host->metadata_calls.push_back(idx);
    if (idx < 0 || static_cast<size_t>(idx) >= g_current_host->metadata.size()) return nullptr;
    const MetadataEntry& entry = g_current_host->metadata[static_cast<size_t>(idx)];
    if (key != nullptr) *key = g_current_host->lend(g_current_host->m_lent_key, entry.key);
    return g_current_host->lend(g_current_host->m_lent_value, entry.value);
  }

  static void updateDiskCounters(int read, int write) {
    const HostCall in_call;
    g_current_host->disk_counters.emplace_back(read, write);
  }

  static const char* localize(const char* text, const char* section, int flags) {
    const HostCall in_call;
    g_current_host->localize_calls.push_back({text, section, flags});
    const auto found = g_current_host->translations.find(text);
    return found == g_current_host->translations.end() ? text : found->second.c_str();
  }

  static DLGPROC prepareDialog(const char* prefix, HINSTANCE instance, int resid, DLGPROC proc,
                               LPARAM init, void** scratch, int slots) {
    const HostCall in_call;
    std::optional<std::string> fifth;
    if (slots == 5 && scratch[4] != nullptr) fifth = static_cast<const char*>(scratch[4]);
    g_current_host->prepare_calls.push_back(
        {prefix, instance, resid, proc, init, scratch, slots, fifth});
    if (g_current_host->on_prepare_dialog) {
      g_current_host->on_prepare_dialog(g_current_host->prepare_calls.back());
    }
    return g_current_host->prepared_procedure;
  }

  static int notCalled() {
    const HostCall in_call;
    ADD_FAILURE() << "the module called a host function that it only keeps";
    return 0;
  }

  static void* lookup(const char* name) {
    const HostCall in_call;
    if (g_current_host == nullptr || name == nullptr) {
      ADD_FAILURE() << "a lookup without a host or without a name";
      return nullptr;
    }
    g_current_host->lookups.emplace_back(name);
    g_current_host->journal.push_back(std::string("lookup ") + name);
    if (g_current_host->withheld.count(name) != 0) return nullptr;
    const auto found = table().find(name);
    return found == table().end() ? nullptr : found->second;
  }

  static int registerRecord(const char* kind, void* record) {
    const HostCall in_call;
    g_current_host->journal.push_back(std::string("register ") + kind);
    g_current_host->registrations.emplace_back(kind, record);
    return g_current_host->answer_to_registration;
  }

  template <class Wanted>
  static void* as(Wanted function) {
    return reinterpret_cast<void*>(function);
  }

  static const std::map<std::string, void*>& table() {
    static const std::map<std::string, void*> table = {
        {"GetMainHwnd", as<GetMainHwndFn>(getMainHwnd)},
        {"GetExePath", as<GetExePathFn>(getExePath)},
        {"get_ini_file", as<GetIniFileFn>(getIniFile)},
        {"format_timestr", as<FormatTimestrFn>(formatTimestr)},
        {"EnumProjectMarkers", as<EnumProjectMarkersFn>(enumProjectMarkers)},
        {"PCM_Source_CreateFromSimple", as<int (*)()>(notCalled)},
        {"EnumCurrentSinkMetadata", as<EnumCurrentSinkMetadataFn>(enumCurrentSinkMetadata)},
        {"update_disk_counters", as<UpdateDiskCountersFn>(updateDiskCounters)},
        {"vac_createGroupsFromTab", as<int (*)()>(notCalled)},
        {"__localizeFunc", as<LocalizeFn>(localize)},
        {"__localizeMenu", as<int (*)()>(notCalled)},
        {"__localizeInitializeDialog", as<int (*)()>(notCalled)},
        {"__localizePrepareDialog", as<LocalizePrepareDialogFn>(prepareDialog)},
    };
    return table;
  }
};

PluginHost::PluginHost() : main_window(&m_own_window) {
  if (g_current_host != nullptr) ADD_FAILURE() << "two hosts in one process";
  g_current_host = this;
}

PluginHost::~PluginHost() {
  g_current_host = nullptr;
}

velmor_plugin_info_t PluginHost::info() const {
  return {kVelmorPluginVersion, main_window, HostFunctions::registerRecord, HostFunctions::lookup};
}

SinkRegistration* PluginHost::sinkRegistration() const {
  if (registrations.empty()) return nullptr;
  return static_cast<SinkRegistration*>(registrations.back().second);
}

const char* PluginHost::lend(std::unique_ptr<std::string>& slot,
                             const std::optional<std::string>& text) {
  if (slot != nullptr) slot->assign(slot->size(), '?');  // seen by a reader that kept it
  slot = text ? std::make_unique<std::string>(*text) : nullptr;
  return slot == nullptr ? nullptr : slot->c_str();
}

}  // namespace fake_host
