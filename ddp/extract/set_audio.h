// The audio of a checked set.
#pragma once

#include <cstddef>
#include <cstdint>

#include "ddp/check/checked_set.h"
#include "ddp/check/set_files.h"
#include "disc/failure.h"

namespace velmor::ddp {

/// Copied at a time: they stay in the processor's cache.
inline constexpr int64_t kSectorsAtOnce = 64;

/// Reads sectors of the set's audio file. One thread.
class SetAudio {
 public:
  /// `set` has a sound layout and its audio file. Throws `Failure` when that is gone.
  explicit SetAudio(const CheckedSet& set);

  int64_t sectors() const { return m_sectors; }
  /// Fills `bytes` with whole sectors from `sector` on, which the set has. Throws `Failure` when
  /// they cannot be read.
  void read(int64_t sector, char* bytes, int64_t sectors) const;
  /// Are these sectors digital silence?
  bool silent(int64_t sector, int64_t sectors) const;

 private:
  std::string m_name;
  SetFile m_file;
  int64_t m_sectors;
};

/// What goes before the image of the extracted album: the pause that every disc has, where it is no
/// more than that and digital silence. 0 or 150.
int64_t sectorsLeftOut(const CheckedSet& set, const SetAudio& audio);

}  // namespace velmor::ddp
