// The files of a set, written into a folder.
#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <string>

#include "disc/ddp/set_layout.h"
#include "disc/failure.h"

namespace velmor::ddp {

/// Fills `bytes`, `count` of them, with what comes next of the audio: little-endian samples, track
/// 1's pregap first. `count` is a whole number of sectors and never passes the layout's end. May
/// throw, which ends the writing.
using AudioSource = std::function<void(char* bytes, size_t count)>;
/// Told now and then how many sectors of audio are written. May throw, which ends the writing.
using WrittenSectors = std::function<void(int64_t sectors)>;

/// Writes the set into `folder`, which is there and holds none of its files, and waits until it is
/// on the disk. `text_packs`: the bytes of CD-TEXT packs, empty for none. Throws
/// `std::filesystem::filesystem_error` when a file cannot be written; some are there then.
void writeSet(const std::filesystem::path& folder, const SetLayout& layout,
              const std::string& text_packs, const AudioSource& audio,
              const WrittenSectors& progress);

}  // namespace velmor::ddp
