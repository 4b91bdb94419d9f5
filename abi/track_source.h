// What one track of a burn reads from the image, as the platform's recording framework meets it.
//
// A framework with a producer class of its own, as on macOS, takes the stretch of the image out of
// the module's producer and reads it through the functions below. `module/burn/` defines them.
#pragma once

#include <cstdint>

#include "abi/disc_recording.h"

/// The module's reader of the image; on this side only pointed at.
class YDK_FileRead;

/// Blocks of a track of `lenbytes` bytes; the sum is 32-bit.
uint64_t trackLengthInBlocks(int lenbytes);

/// Reads the track's next `length` bytes, seeking first when another track has moved the shared
/// reader, and moves `rdpos` by what it got. A short or failed read is answered as it is.
uint32_t readTrackData(YDK_FileRead& file, int posbytes, int lenbytes, int& rdpos, void* buffer,
                       uint32_t length);

/// Puts the shared reader and the track back to their beginnings.
void restartTrack(YDK_FileRead& file, int& rdpos);

/// A track of the image as recording services take it. Reads on the service's thread, one track at
/// a time: all tracks of a burn share one reader.
class CDBurnTrackSource final : public DiscTrackProducer {
 public:
  uint64_t EstimateLengthOfTrack() override;
  bool PrepareTrack() override;
  void CleanupTrackAfterBurn() override;
  uint32_t ProducePreGap(void* buffer, uint32_t length) override;
  uint32_t ProduceData(void* buffer, uint32_t length) override;
  bool PrepareTrackForVerification() override;
  bool VerifyPreGap(const void* buffer, uint32_t length) override;
  bool VerifyData(const void* buffer, uint32_t length) override;
  bool CleanupTrackAfterVerification() override;

  YDK_FileRead* file = nullptr;  ///< not owned
  int posbytes = 0;              ///< offset of the track's first block in the image
  int lenbytes = 0;
  int rdpos = 0;  ///< bytes produced so far
};
