// The module as a host meets it: loaded from its file, known by its two exported symbols.
#pragma once

#include <string>

#include "abi/host_functions.h"
#include "tests/fake_host/files.h"

namespace fake_host {

/// Loads a private copy of the module, so that its static initialisers run anew for every object.
/// Failing to load fails the test; `entry` is then null.
class LoadedModule {
 public:
  LoadedModule();
  ~LoadedModule();
  LoadedModule(const LoadedModule&) = delete;
  LoadedModule& operator=(const LoadedModule&) = delete;

  VelmorPluginEntryFn entry() const { return m_entry; }
  QuelmDllMainFn dllMain() const { return m_dll_main; }
  /// A symbol of the module, or null when it exports none of that name.
  void* symbol(const char* name) const;

  /// The file the build made, or what the environment names in VELMOR_TEST_MODULE.
  static std::string file();

 private:
  TempFolder m_folder;
  void* m_handle = nullptr;
  VelmorPluginEntryFn m_entry = nullptr;
  QuelmDllMainFn m_dll_main = nullptr;
};

}  // namespace fake_host
