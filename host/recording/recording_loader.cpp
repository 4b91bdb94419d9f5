#include "host/recording/recording_loader.h"

#include <dlfcn.h>

namespace velmor::recording {

Service* loadRecording(const std::string& folder, const Options& options) {
  const std::string path = (folder.empty() ? "." : folder) + "/" + kRecordingLibrary;
  // Never unloaded: a worker thread of libburn may still be on its way out when a burn is over.
  void* library = dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL | RTLD_NODELETE);
  if (library == nullptr) {
    const char* reason = dlerror();
    throw Failure("the recording library cannot be loaded (" +
                  std::string(reason != nullptr ? reason : path) +
                  "); it belongs beside the program and needs the package libburn4");
  }
  const auto open = reinterpret_cast<OpenRecordingFn>(dlsym(library, kOpenRecordingSymbol));
  if (open == nullptr) {
    throw Failure(path +
                  " is not the recording library of this program; install both from one build");
  }
  return open(options);
}

}  // namespace velmor::recording
