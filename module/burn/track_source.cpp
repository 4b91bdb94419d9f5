#include "abi/track_source.h"

#include <algorithm>
#include <cstring>

#include "module/support/cd_units.h"
#include "module/support/file_read.h"
#include "module/support/wrapping.h"

uint64_t trackLengthInBlocks(int lenbytes) {
  return static_cast<uint64_t>(
      static_cast<int64_t>(wrappingAdd(lenbytes, kSectorBytes - 1) / kSectorBytes));
}

uint32_t readTrackData(YDK_FileRead& file, int posbytes, int lenbytes, int& rdpos, void* buffer,
                       uint32_t length) {
  const int want = wrappingAdd(posbytes, rdpos);
  if (file.GetPosition() != want) file.SetPosition(want);
  const int64_t left = int64_t{lenbytes} - rdpos;
  const int n = file.Read(buffer, static_cast<int>(std::min<int64_t>(length, left)));
  rdpos = wrappingAdd(rdpos, n);
  return static_cast<uint32_t>(n);
}

void restartTrack(YDK_FileRead& file, int& rdpos) {
  file.SetPosition(0);
  rdpos = 0;
}

uint64_t CDBurnTrackSource::EstimateLengthOfTrack() {
  return trackLengthInBlocks(lenbytes);
}

bool CDBurnTrackSource::PrepareTrack() {
  return true;
}

void CDBurnTrackSource::CleanupTrackAfterBurn() {}

uint32_t CDBurnTrackSource::ProducePreGap(void* buffer, uint32_t length) {
  memset(buffer, 0, length);
  return length;
}

uint32_t CDBurnTrackSource::ProduceData(void* buffer, uint32_t length) {
  return readTrackData(*file, posbytes, lenbytes, rdpos, buffer, length);
}

bool CDBurnTrackSource::PrepareTrackForVerification() {
  restartTrack(*file, rdpos);
  return true;
}

bool CDBurnTrackSource::VerifyPreGap(const void* /*buffer*/, uint32_t /*length*/) {
  return true;
}

bool CDBurnTrackSource::VerifyData(const void* /*buffer*/, uint32_t /*length*/) {
  return true;
}

bool CDBurnTrackSource::CleanupTrackAfterVerification() {
  return true;
}
