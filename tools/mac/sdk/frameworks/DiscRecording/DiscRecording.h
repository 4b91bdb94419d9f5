// What the module uses of Apple DiscRecording.
#pragma once

#import <Foundation/Foundation.h>

@class DRBurn;
@class DRTrack;

// Called by the framework on a thread of its own; buffers are whole blocks.
@protocol DRTrackDataProduction
- (uint64_t)estimateLengthOfTrack:(DRTrack*)track;
- (BOOL)prepareTrack:(DRTrack*)track forBurn:(DRBurn*)burn toMedia:(NSDictionary*)mediaInfo;
- (void)cleanupTrackAfterBurn:(DRTrack*)track;
- (uint32_t)producePreGapForTrack:(DRTrack*)track
                       intoBuffer:(char*)buffer
                           length:(uint32_t)bufferLength
                        atAddress:(uint64_t)address
                        blockSize:(uint32_t)blockSize
                          ioFlags:(uint32_t*)flags;
- (uint32_t)produceDataForTrack:(DRTrack*)track
                     intoBuffer:(char*)buffer
                         length:(uint32_t)bufferLength
                      atAddress:(uint64_t)address
                      blockSize:(uint32_t)blockSize
                        ioFlags:(uint32_t*)flags;
- (BOOL)prepareTrackForVerification:(DRTrack*)track;
- (BOOL)verifyPreGapForTrack:(DRTrack*)track
                    inBuffer:(const char*)buffer
                      length:(uint32_t)bufferLength
                   atAddress:(uint64_t)address
                   blockSize:(uint32_t)blockSize
                     ioFlags:(uint32_t*)flags;
- (BOOL)verifyDataForTrack:(DRTrack*)track
                  inBuffer:(const char*)buffer
                    length:(uint32_t)bufferLength
                 atAddress:(uint64_t)address
                 blockSize:(uint32_t)blockSize
                   ioFlags:(uint32_t*)flags;
- (BOOL)cleanupTrackAfterVerification:(DRTrack*)track;
@end

@interface DRDevice : NSObject
+ (NSArray*)devices;
- (BOOL)isValid;
- (NSDictionary*)info;
- (BOOL)acquireExclusiveAccess;
- (void)releaseExclusiveAccess;
@end

@interface DRBurn : NSObject
+ (DRBurn*)burnForDevice:(DRDevice*)device;
- (void)setProperties:(NSDictionary*)properties;
@end

@interface DRTrack : NSObject
- (id)initWithProducer:(id)producer;
- (void)setProperties:(NSDictionary*)properties;
@end

extern "C" {
extern NSString* const DRDeviceVendorNameKey;
extern NSString* const DRDeviceProductNameKey;
extern NSString* const DRBurnTestingKey;
extern NSString* const DRBurnAppendableKey;
extern NSString* const DRBurnOverwriteDiscKey;
extern NSString* const DRBurnVerifyDiscKey;
extern NSString* const DRBurnCompletionActionKey;
extern NSString* const DRBurnCompletionActionEject;
extern NSString* const DRBurnCompletionActionMount;
extern NSString* const DRBurnFailureActionKey;
extern NSString* const DRBurnFailureActionNone;
extern NSString* const DRPreGapLengthKey;
extern NSString* const DRDataFormKey;
extern NSString* const DRTrackModeKey;
extern NSString* const DRBlockTypeKey;
extern NSString* const DRSessionFormatKey;
extern NSString* const DRBlockSizeKey;
extern NSString* const DRTrackLengthKey;
}
