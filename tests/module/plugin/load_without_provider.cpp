// Loads the module named on the command line into a process that offers it nothing.
// Exit 0 when it loads and its windowing hook answers.
#include <dlfcn.h>

#include <cstdio>

int main(int argc, char** argv) {
  if (argc != 2) {
    std::fprintf(stderr, "usage: load_without_provider MODULE\n");
    return 2;
  }
  void* module = dlopen(argv[1], RTLD_NOW | RTLD_LOCAL);
  if (module == nullptr) {
    std::fprintf(stderr, "%s\n", dlerror());
    return 1;
  }
  const auto hook = reinterpret_cast<int (*)()>(dlsym(module, "QUELM_dllMain"));
  return hook != nullptr && hook() == 1 ? 0 : 1;
}
