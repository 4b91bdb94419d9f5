// What a process that drives the dylib can say, and see, of the Mac around it.
#pragma once

#include <string>

namespace loader {

enum class Disk {
  kLocal,
  kRemote,
  kUnknown,  ///< the system cannot say
};

/// A process offers one as the symbol `velmorMacProcess`; without it everything is as below.
class MacProcess {
 public:
  using FindFunction = void* (*)(const char* name);

  /// The dylib is being loaded. From then until it is unloaded, `find` knows its functions,
  /// exported or not, by their names with the leading underscore.
  virtual void loading(FindFunction /*find*/) {}
  /// Where an open file lies, when the dylib asks.
  virtual Disk diskOf(int /*fd*/) { return Disk::kLocal; }
  /// The dylib switches the system's caching of a file off (`value` 1) or on.
  virtual void setUncached(int /*fd*/, int /*value*/) {}
  /// False on a system without the frameworks for discs.
  virtual bool hasDiscRecording() { return true; }
  /// Whether the application is in the foreground.
  virtual bool isActive() { return true; }
  /// How often a modal session answers that it goes on before the burn is done.
  virtual int turnsOfSession() { return 0; }
  /// Whether the session is aborted instead.
  virtual bool abortsSession() { return false; }
  /// A message to the application, by its selector.
  virtual void sentToApplication(const std::string& /*selector*/) {}

 protected:
  ~MacProcess() = default;
};

/// This process's, or one that leaves everything as it is above.
MacProcess& theProcess();

}  // namespace loader

/// The symbol. Answers null while there is nothing to say.
using VelmorMacProcessFn = loader::MacProcess* (*)();
