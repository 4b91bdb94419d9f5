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

  VelmorPluginEntryFn entry() const { return entry_; }
  QuelmDllMainFn dll_main() const { return dll_main_; }
  /// A symbol of the module, or null when it exports none of that name.
  void* Symbol(const char* name) const;

  /// The file the build made, or what the environment names in VELMOR_TEST_MODULE.
  static std::string File();

 private:
  TempFolder folder_;
  void* handle_ = nullptr;
  VelmorPluginEntryFn entry_ = nullptr;
  QuelmDllMainFn dll_main_ = nullptr;
};

}  // namespace fake_host
