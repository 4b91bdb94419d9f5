#include "disc/ddp/set_writer.h"

#include <algorithm>
#include <vector>

#include "disc/ddp/checksum_files.h"
#include "disc/ddp/identifier.h"
#include "disc/ddp/pq_packets.h"
#include "disc/ddp/stream_map.h"
#include "disc/files/new_file.h"
#include "disc/units/disc_units.h"

namespace velmor::ddp {

namespace {

namespace fs = std::filesystem;

/// Sectors read, summed and written at a time: they stay in the processor's cache.
constexpr int64_t kSectorsAtOnce = 64;

DigestTexts writeBytes(const fs::path& path, const std::string& bytes) {
  disc::NewFile file(path, path);
  Digests digests;
  digests.add(bytes.data(), bytes.size());
  file.write(bytes);
  file.sync();
  return digests.finish();
}

DigestTexts writeAudio(const fs::path& path, int64_t sectors, const AudioSource& audio,
                       const WrittenSectors& progress) {
  disc::NewFile file(path, path);
  Digests digests;
  std::vector<char> buffer(static_cast<size_t>(kSectorsAtOnce) * disc::kBytesPerSector);
  for (int64_t done = 0; done < sectors;) {
    const int64_t now = std::min(kSectorsAtOnce, sectors - done);
    const size_t bytes = static_cast<size_t>(now) * disc::kBytesPerSector;
    audio(buffer.data(), bytes);
    digests.add(buffer.data(), bytes);
    file.write({buffer.data(), bytes});
    done += now;
    progress(done);
  }
  file.sync();
  return digests.finish();
}

}  // namespace

void writeSet(const fs::path& folder, const SetLayout& layout, const std::string& text_packs,
              const AudioSource& audio, const WrittenSectors& progress) {
  const std::string pq = pqBytes(layout);
  std::vector<NamedDigests> files;
  const auto add = [&](const char* name, const std::string& bytes) {
    files.push_back({name, writeBytes(folder / name, bytes)});
  };
  add(kIdentifierFile, identifierBytes(layout));
  add(kMapFile, mapBytes(layout, text_packs.size(), pq.size()));
  if (!text_packs.empty()) add(kTextFile, text_packs);
  add(kPqFile, pq);
  files.push_back({kAudioFile, writeAudio(folder / kAudioFile, layout.sectors, audio, progress)});
  writeBytes(folder / kMd5File, md5List(files));
  writeBytes(folder / kCrcFile, crcList(files));
}

}  // namespace velmor::ddp
