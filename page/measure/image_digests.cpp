#include "page/measure/image_digests.h"

#include <fstream>
#include <vector>

namespace velmor::page {

std::optional<ddp::DigestTexts> digestsOf(const PageImage& image, const BytesDone& progress) {
  constexpr size_t kBytesAtOnce = size_t{256} << 10;
  std::ifstream in(image.path, std::ios::binary);
  if (!image.exists || !in) return std::nullopt;
  ddp::Digests digests(true);
  std::vector<char> bytes(kBytesAtOnce);
  int64_t done = 0;
  while (in) {
    in.read(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    digests.add(bytes.data(), static_cast<size_t>(in.gcount()));
    done += in.gcount();
    progress(in.gcount());
  }
  // A stream calls a failed read the file's end; the length tells.
  if (done != image.bytes) return std::nullopt;
  return digests.finish();
}

}  // namespace velmor::page
