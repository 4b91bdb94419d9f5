// The headers of audio files, for whether they state more than there is and what they say of it.
#include "disc/audio/stated_length.h"

#include <sys/mman.h>
#include <unistd.h>

#include "fuzz/host/line_of_text.h"
#include "fuzz/kit/fuzz_target.h"
#include "host/render/input/marks/vorbis_comments.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  static const int kFile = memfd_create("velmor-fuzz", MFD_CLOEXEC);
  const auto length = static_cast<off_t>(size);
  if (ftruncate(kFile, 0) != 0 || pwrite(kFile, data, size, 0) != static_cast<ssize_t>(size) ||
      lseek(kFile, length / 2, SEEK_SET) != length / 2) {
    abort();
  }
  int failure = 0;
  const velmor::disc::FileBytes bytes(kFile, length, failure);
  const bool whole = velmor::disc::extentOf(bytes) == velmor::disc::Extent::kWhole;
  velmor::render::Tags tags;
  velmor::render::addVorbisComments(velmor::render::vorbisCommentsIn(bytes), tags);
  fuzz::require(lseek(kFile, 0, SEEK_CUR) == length / 2, "the decoder finds its file where it was");
  fuzz::require(failure == 0, "memory refuses no read");
  fuzz::require(whole || size >= 4, "what has no header states no length");
  fuzz::requireLineOfText(tags.songwriter);
  fuzz::require(tags.isrc.empty() || tags.isrc.size() == 12, "a code has twelve characters");
  return 0;
}
