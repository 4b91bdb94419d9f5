#import "module/platform/cd_burn_source_mac.h"

#include <cstring>

#include "abi/track_source.h"

@implementation QuinloCDBurnSource

- (uint64_t)estimateLengthOfTrack:(DRTrack*)track {
  (void)track;
  return trackLengthInBlocks(lenbytes);
}

- (BOOL)prepareTrack:(DRTrack*)track forBurn:(DRBurn*)burn toMedia:(NSDictionary*)mediaInfo {
  (void)track, (void)burn, (void)mediaInfo;
  return YES;
}

- (void)cleanupTrackAfterBurn:(DRTrack*)track {
  (void)track;
}

- (uint32_t)producePreGapForTrack:(DRTrack*)track
                       intoBuffer:(char*)buffer
                           length:(uint32_t)bufferLength
                        atAddress:(uint64_t)address
                        blockSize:(uint32_t)blockSize
                          ioFlags:(uint32_t*)flags {
  (void)track, (void)address, (void)blockSize, (void)flags;
  memset(buffer, 0, bufferLength);
  return bufferLength;
}

- (uint32_t)produceDataForTrack:(DRTrack*)track
                     intoBuffer:(char*)buffer
                         length:(uint32_t)bufferLength
                      atAddress:(uint64_t)address
                      blockSize:(uint32_t)blockSize
                        ioFlags:(uint32_t*)flags {
  (void)track, (void)address, (void)blockSize, (void)flags;
  return readTrackData(*file, posbytes, lenbytes, rdpos, buffer, bufferLength);
}

- (BOOL)prepareTrackForVerification:(DRTrack*)track {
  (void)track;
  restartTrack(*file, rdpos);
  return YES;
}

- (BOOL)verifyPreGapForTrack:(DRTrack*)track
                    inBuffer:(const char*)buffer
                      length:(uint32_t)bufferLength
                   atAddress:(uint64_t)address
                   blockSize:(uint32_t)blockSize
                     ioFlags:(uint32_t*)flags {
  (void)track, (void)buffer, (void)bufferLength, (void)address, (void)blockSize, (void)flags;
  return YES;
}

- (BOOL)verifyDataForTrack:(DRTrack*)track
                  inBuffer:(const char*)buffer
                    length:(uint32_t)bufferLength
                 atAddress:(uint64_t)address
                 blockSize:(uint32_t)blockSize
                   ioFlags:(uint32_t*)flags {
  (void)track, (void)buffer, (void)bufferLength, (void)address, (void)blockSize, (void)flags;
  return YES;
}

- (BOOL)cleanupTrackAfterVerification:(DRTrack*)track {
  (void)track;
  return YES;
}

@end
