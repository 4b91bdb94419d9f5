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

/// Script `windowing` before `load`, and `host` before `bind`.
class Session {
 public:
  TempFolder folder;
  WindowingLayer windowing;
  PluginHost host;
  std::optional<LoadedModule> module;

  /// Loads the module (its static initialisers run).
  void load() { module.emplace(); }
  /// Calls the entry with the host's record; returns its answer.
  int bind();
  SinkRegistration& registration() const { return *host.sinkRegistration(); }

  /// Has the module make a sink on `name` in the folder; empty when the module gives none.
  Sink createSink(const std::string& name, const Settings& settings = {});
  std::string file(const std::string& name) const { return folder.file(name); }
};

/// A session with the module loaded and bound.
class BoundSession : public Session {
 public:
  BoundSession();
};

}  // namespace fake_host
