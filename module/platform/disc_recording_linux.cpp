#include <dlfcn.h>

#include "module/platform/disc_recording.h"

DiscRecordingService* platformFindDiscRecording() {
  const auto service =
      reinterpret_cast<VelmorGetDiscRecordingFn>(dlsym(RTLD_DEFAULT, "velmorGetDiscRecording"));
  return service ? service() : nullptr;
}
