#include "host/recording/recording_loader.h"

#include <dlfcn.h>

namespace velmor::recording {

Service* loadRecording(const std::string& path, const Options& options, std::string& why) {
  // Never unloaded: a worker thread of libburn may still be on its way out when a burn is over.
  void* library = dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL | RTLD_NODELETE);
  if (library == nullptr) {
    const char* reason = dlerror();
    why = "The recording library cannot be loaded (" +
          std::string(reason != nullptr ? reason : path) +
          "). It comes with the program and needs the package libburn4.";
    return nullptr;
  }
  const auto open = reinterpret_cast<OpenRecordingFn>(dlsym(library, kOpenRecordingSymbol));
  if (open == nullptr) {
    why = path + " is not the recording library of this program. Install both from one build.";
    return nullptr;
  }
  return open(options, why);
}

}  // namespace velmor::recording
