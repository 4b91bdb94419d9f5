// A whole session of a host with the module, in a folder of its own.
#pragma once

#include <optional>
#include <string>

#include "tests/fake_host/files.h"
#include "tests/fake_host/loaded_module.h"
#include "tests/fake_host/plugin_host.h"
#include "tests/fake_host/sink.h"
#include "tests/fake_host/windowing_layer.h"

namespace fake_host {

/// Script `windowing` before `Load`, and `host` before `Bind`.
class Session {
 public:
  TempFolder folder;
  WindowingLayer windowing;
  PluginHost host;
  std::optional<LoadedModule> module;

  /// Loads the module (its static initialisers run).
  void Load() { module.emplace(); }
  /// Calls the entry with the host's record; returns its answer.
  int Bind();
  SinkRegistration& registration() const { return *host.sink_registration(); }

  /// Has the module make a sink on `name` in the folder; empty when the module gives none.
  Sink CreateSink(const std::string& name, const Settings& settings = {});
  std::string File(const std::string& name) const { return folder.file(name); }
};

/// A session with the module loaded and bound.
class BoundSession : public Session {
 public:
  BoundSession();
};

}  // namespace fake_host
