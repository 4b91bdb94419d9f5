#include "tests/fake_host/loaded_module.h"

#include <dlfcn.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>

namespace fake_host {

LoadedModule::LoadedModule() {
  const std::string copy = folder_.file("module.so");
  std::filesystem::copy_file(File(), copy);
  handle_ = dlopen(copy.c_str(), RTLD_NOW | RTLD_LOCAL);
  if (handle_ == nullptr) {
    ADD_FAILURE() << dlerror();
    return;
  }
  entry_ = reinterpret_cast<VelmorPluginEntryFn>(Symbol("VelmorPluginEntry"));
  dll_main_ = reinterpret_cast<QuelmDllMainFn>(Symbol("QUELM_dllMain"));
  EXPECT_NE(entry_, nullptr);
  EXPECT_NE(dll_main_, nullptr);
}

LoadedModule::~LoadedModule() {
  if (handle_ != nullptr) dlclose(handle_);
}

void* LoadedModule::Symbol(const char* name) const {
  return handle_ == nullptr ? nullptr : dlsym(handle_, name);
}

std::string LoadedModule::File() {
  const char* const other = std::getenv("VELMOR_TEST_MODULE");
  return other != nullptr ? other : VELMOR_MODULE;
}

}  // namespace fake_host
