#include "host/render/module/module_library.h"

#include <dlfcn.h>

#include <cstring>
#include <filesystem>

#include "disc/failure.h"
#include "disc/text/phrases.h"
#include "host/render/module/host_callbacks.h"

namespace velmor::render {

namespace {

const SinkRegistration* g_registered = nullptr;

int registerRecord(const char* kind, void* record) {
  if (!kind || !record || strcmp(kind, "pcmsink") != 0) return 0;
  g_registered = static_cast<const SinkRegistration*>(record);
  return 1;
}

std::string whyRefused(const std::string& path, int asked) {
  const std::string version = std::to_string(kVelmorPluginVersion);
  if (asked == 0) {
    return "the module " + disc::inQuotes(path) +
           " is made for another version of the plug-in interface than " + version +
           ", which this program speaks; use the module that came with it";
  }
  return "the module " + disc::inQuotes(path) +
         " does not start: it misses a function that this program does not offer; use the module "
         "that came with it";
}

}  // namespace

ModuleLibrary::ModuleLibrary(const std::string& path) {
  // Made absolute, since the loader looks for a name without a slash in the system's library
  // folders.
  const std::string file = std::filesystem::absolute(path).string();
  m_handle = dlopen(file.c_str(), RTLD_NOW | RTLD_LOCAL);
  if (!m_handle) {
    const char* const why = dlerror();
    throw Failure("the module cannot be loaded: " + std::string(why ? why : path) +
                  "; give its place with --module");
  }
  m_entry = reinterpret_cast<VelmorPluginEntryFn>(dlsym(m_handle, "VelmorPluginEntry"));
  if (!m_entry) {
    dlclose(m_handle);
    throw Failure(
        disc::inQuotes(path) +
        " is no module of this kind: it has no VelmorPluginEntry; give another with --module");
  }
  g_registered = nullptr;
  const int asked_before = hostFunctionsAskedFor();
  velmor_plugin_info_t info{kVelmorPluginVersion, nullptr, registerRecord, hostFunction};
  const int bound = m_entry(m_handle, &info);
  m_sink = g_registered;
  if (bound && m_sink) return;
  m_entry(m_handle, nullptr);
  dlclose(m_handle);
  if (!bound) throw Failure(whyRefused(path, hostFunctionsAskedFor() - asked_before));
  throw Failure(
      "the module " + disc::inQuotes(path) +
      " starts but registers no render format; use the module that came with this program");
}

ModuleLibrary::~ModuleLibrary() {
  m_entry(m_handle, nullptr);
  dlclose(m_handle);
}

}  // namespace velmor::render
