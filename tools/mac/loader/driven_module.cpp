// The dylib dressed as a module for Linux: loading this library loads the dylib, and its two
// exports lead into it. So every test that drives a module through its file can drive the dylib.
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <memory>

#include "abi/exports.h"
#include "tools/mac/loader/dylib_image.h"
#include "tools/mac/loader/frameworks.h"
#include "tools/mac/loader/mac_process.h"
#include "tools/mac/loader/objective_c.h"
#include "tools/mac/loader/system_library.h"

namespace {

void* resolve(const std::string& library, const std::string& symbol) {
  if (library.ends_with("/libSystem.B.dylib") || library.ends_with("/libc++.1.dylib")) {
    return loader::systemSymbol(symbol);
  }
  if (library.ends_with("/libobjc.A.dylib") && !symbol.starts_with("_OBJC_")) {
    return loader::runtimeSymbol(symbol);
  }
  if (library.find("/DiscRecording") != std::string::npos &&
      !loader::theProcess().hasDiscRecording()) {
    return nullptr;
  }
  return loader::frameworkSymbol(symbol);
}

/// Maps the dylib when this library is loaded and lets go of it when it is unloaded.
class DrivenModule {
 public:
  DrivenModule() {
    loader::instancesAlive();  // its count must outlive this object
    try {
      m_image = std::make_unique<loader::DylibImage>(VELMOR_DYLIB, &resolve);
      m_image->runInitialisers();
    } catch (const std::exception& error) {
      fprintf(stderr, "cannot load the dylib: %s\n", error.what());
      abort();
    }
  }
  ~DrivenModule() {
    if (loader::instancesAlive() != 0) {
      fprintf(stderr, "the dylib left %d objects behind\n", loader::instancesAlive());
      abort();
    }
  }

  template <class Function>
  Function* findExport(const char* name) const {
    void* const address = m_image->findExport(name);
    if (!address) {
      fprintf(stderr, "the dylib exports no %s\n", name);
      abort();
    }
    return reinterpret_cast<Function*>(address);
  }

  void* findFunction(const char* name) const { return m_image->findFunction(name); }

 private:
  std::unique_ptr<loader::DylibImage> m_image;
};

const DrivenModule& theModule() {
  static const DrivenModule kModule;
  return kModule;
}

void* findFunction(const char* name) {
  return theModule().findFunction(name);
}

__attribute__((constructor)) void loadWithThisLibrary() {
  loader::theProcess().loading(&findFunction);
  theModule();
}

}  // namespace

int VelmorPluginEntry(HINSTANCE instance, velmor_plugin_info_t* info) {
  return theModule().findExport<decltype(VelmorPluginEntry)>("_VelmorPluginEntry")(instance, info);
}

int QUELM_dllMain() {
  return theModule().findExport<decltype(QUELM_dllMain)>("_QUELM_dllMain")();
}
