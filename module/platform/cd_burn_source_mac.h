// The producer of one track, as Apple's DiscRecording takes it.
#pragma once

#import <DiscRecording/DiscRecording.h>

class YDK_FileRead;

/// Gives the framework a track's blocks. It does what `CDBurnTrackSource` (abi/track_source.h)
/// does, and its variables are the same.
@interface QuinloCDBurnSource : NSObject <DRTrackDataProduction> {
 @public
  YDK_FileRead* file;  ///< not owned; all tracks of a burn share one reader
  int posbytes;        ///< offset of the track's first block in the image
  int lenbytes;
  int rdpos;  ///< bytes produced so far
}
@end
