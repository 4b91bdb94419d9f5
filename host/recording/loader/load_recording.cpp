#include "host/recording/loader/load_recording.h"

#include <dlfcn.h>

#include "disc/failure.h"
#include "disc/text/phrases.h"

namespace velmor::recording {

Service* loadRecording(const std::string& path, const RecordingOptions& options) {
  // Never unloaded: a worker thread of libburn may still be on its way out when a burn is over.
  void* library = dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL | RTLD_NODELETE);
  if (library == nullptr) {
    const char* reason = dlerror();
    throw Failure("the recording library cannot be loaded: " +
                  std::string(reason != nullptr ? reason : path) +
                  "; it comes with the program and needs the package libburn4");
  }
  const auto open = reinterpret_cast<OpenRecordingFn>(dlsym(library, kOpenRecordingSymbol));
  if (open == nullptr) {
    throw Failure(disc::inQuotes(path) +
                  " is not the recording library of this program; install both from one build");
  }
  std::string why;
  Service* service = open(options, why);
  if (service == nullptr) throw Failure(why);
  return service;
}

}  // namespace velmor::recording
