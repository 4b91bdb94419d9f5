// The headers of audio files, for whether they state more than there is.
#include "host/render/input/stated_length.h"

#include <sys/mman.h>
#include <unistd.h>

#include "fuzz/fuzz_target.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  static const int file = memfd_create("velmor-fuzz", MFD_CLOEXEC);
  const auto length = static_cast<off_t>(size);
  if (ftruncate(file, 0) != 0 || pwrite(file, data, size, 0) != static_cast<ssize_t>(size) ||
      lseek(file, length / 2, SEEK_SET) != length / 2) {
    abort();
  }
  const bool runs_over = velmor::render::audioRunsOverTheEnd(file, length);
  fuzz::require(lseek(file, 0, SEEK_CUR) == length / 2, "the decoder finds its file where it was");
  fuzz::require(!runs_over || size >= 4, "what has no header states no length");
  return 0;
}
