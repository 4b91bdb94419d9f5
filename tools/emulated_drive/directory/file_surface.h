// Recorded sectors kept in a file, LBA -150 at its start.
#pragma once

#include <filesystem>

#include "tools/emulated_drive/disc/emulated_disc.h"

namespace velmor::emulated_drive {

/// Opens the file at the first sector and keeps it open; the file is made when something is
/// written.
class FileSurface final : public AudioSurface {
 public:
  explicit FileSurface(std::filesystem::path file) : m_file(std::move(file)) {}
  ~FileSurface() override;
  FileSurface(const FileSurface&) = delete;
  FileSurface& operator=(const FileSurface&) = delete;

  bool write(int32_t lba, ByteView sectors) override;
  bool read(int32_t lba, std::span<uint8_t> sectors) override;
  bool erase() override;
  /// The disc was changed: what comes next belongs to another file of the same name.
  void forget();

 private:
  bool open(int flags);  // beyond O_RDWR

  std::filesystem::path m_file;
  int m_descriptor = -1;
};

}  // namespace velmor::emulated_drive
