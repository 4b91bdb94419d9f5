// The module, loaded and bound as a workstation does it.
#pragma once

#include <memory>
#include <string>

#include "abi/host_functions.h"
#include "abi/sink_registration.h"
#include "disc/failure.h"

namespace velmor::render {

/// The module from load to unload. One at a time: the function by which the module registers itself
/// has no argument that would tell two of them apart.
class ModuleLibrary {
 public:
  /// Loads the module at `path` and has it register its sink; throws `Failure` when it will
  /// not.
  explicit ModuleLibrary(const std::string& path);
  /// Calls the module's entry with a null record, which tells it to unregister, and unloads it.
  ~ModuleLibrary();
  ModuleLibrary(const ModuleLibrary&) = delete;
  ModuleLibrary& operator=(const ModuleLibrary&) = delete;

  const SinkRegistration& sink() const { return *m_sink; }

 private:
  void* m_handle = nullptr;
  VelmorPluginEntryFn m_entry = nullptr;
  const SinkRegistration* m_sink = nullptr;
};

}  // namespace velmor::render
