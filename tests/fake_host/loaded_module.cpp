#include "tests/fake_host/loaded_module.h"

#include <dlfcn.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>

namespace fake_host {

LoadedModule::LoadedModule() {
  const std::string copy = m_folder.file("module.so");
  std::filesystem::copy_file(file(), copy);
  m_handle = dlopen(copy.c_str(), RTLD_NOW | RTLD_LOCAL);
  if (m_handle == nullptr) {
    ADD_FAILURE() << dlerror();
    return;
  }
  m_entry = reinterpret_cast<VelmorPluginEntryFn>(symbol("VelmorPluginEntry"));
  m_dll_main = reinterpret_cast<QuelmDllMainFn>(symbol("QUELM_dllMain"));
  EXPECT_NE(m_entry, nullptr);
  EXPECT_NE(m_dll_main, nullptr);
}

LoadedModule::~LoadedModule() {
  if (m_handle != nullptr) dlclose(m_handle);
}

void* LoadedModule::symbol(const char* name) const {
  return m_handle == nullptr ? nullptr : dlsym(m_handle, name);
}

std::string LoadedModule::file() {
  const char* const other = std::getenv("VELMOR_TEST_MODULE");
  return other != nullptr ? other : VELMOR_MODULE;
}

}  // namespace fake_host
