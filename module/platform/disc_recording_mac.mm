#import <Cocoa/Cocoa.h>
#import <DiscRecording/DiscRecording.h>
#import <DiscRecordingUI/DiscRecordingUI.h>

#include <algorithm>

#include "abi/track_source.h"
#import "module/platform/cd_burn_delegate_mac.h"
#import "module/platform/cd_burn_source_mac.h"
#include "module/platform/disc_recording.h"
#include "module/platform/modal_pause_mac.h"

namespace {

/// The burn's properties, set in the order the burn engine names them.
NSDictionary* burnDictionary(const DiscBurnProperties& properties) {
  // The action of a failure is given as the completion constant for "eject" on purpose: the
  // framework takes it there as well, and the disc of a failed burn comes out too.
  NSString* const completion = properties.completion_action == kDiscActionEject
                                   ? DRBurnCompletionActionEject
                                   : DRBurnCompletionActionMount;
  NSString* const failure = properties.failure_action == kDiscActionEject
                                ? DRBurnCompletionActionEject
                                : DRBurnFailureActionNone;
  NSMutableDictionary* const entries = [NSMutableDictionary dictionary];
  [entries setObject:[NSNumber numberWithBool:properties.testing] forKey:DRBurnTestingKey];
  [entries setObject:[NSNumber numberWithBool:properties.appendable] forKey:DRBurnAppendableKey];
  [entries setObject:[NSNumber numberWithBool:properties.overwrite] forKey:DRBurnOverwriteDiscKey];
  [entries setObject:[NSNumber numberWithBool:properties.verify] forKey:DRBurnVerifyDiscKey];
  [entries setObject:completion forKey:DRBurnCompletionActionKey];
  [entries setObject:failure forKey:DRBurnFailureActionKey];
  return entries;
}

NSDictionary* trackDictionary(const DiscTrack& track) {
  NSMutableDictionary* const entries = [NSMutableDictionary dictionary];
  [entries setObject:[NSNumber numberWithInt:track.pregap_length] forKey:DRPreGapLengthKey];
  [entries setObject:[NSNumber numberWithInt:track.data_form] forKey:DRDataFormKey];
  [entries setObject:[NSNumber numberWithInt:track.track_mode] forKey:DRTrackModeKey];
  [entries setObject:[NSNumber numberWithInt:track.block_type] forKey:DRBlockTypeKey];
  [entries setObject:[NSNumber numberWithInt:track.session_format] forKey:DRSessionFormatKey];
  [entries setObject:[NSNumber numberWithInt:track.block_size] forKey:DRBlockSizeKey];
  // The length is a plain count of blocks, which the framework takes as well as a time object.
  [entries setObject:[NSNumber numberWithInt:track.track_length] forKey:DRTrackLengthKey];
  return entries;
}

/// The framework's track of `track`; the caller releases it.
DRTrack* newTrack(const DiscTrack& track) {
  const auto* const cut = static_cast<const CDBurnTrackSource*>(track.producer);
  QuinloCDBurnSource* const producer = [[QuinloCDBurnSource alloc] init];
  producer->file = cut->file;
  producer->posbytes = cut->posbytes;
  producer->lenbytes = cut->lenbytes;
  producer->rdpos = cut->rdpos;
  DRTrack* const made = [[DRTrack alloc] initWithProducer:producer];
  [producer release];
  [made setProperties:trackDictionary(track)];
  return made;
}

void runModally(NSWindow* window) {
  if ([NSApp isActive]) {
    [NSApp runModalForWindow:window];
    return;
  }
  // An application in the background gets no events that would wake a modal run: look for the end
  // instead.
  const NSModalSession session = [NSApp beginModalSessionForWindow:window];
  while ([NSApp runModalSession:session] == NSModalResponseContinue) platformModalPause();
  [NSApp endModalSession:session];
}

/// Apple DiscRecording as the burn engine meets it.
class AppleDiscRecording final : public DiscRecordingService {
 public:
  void findDevices() { m_devices = [DRDevice devices]; }

  int DeviceCount() override {
    // A walk asks for the count behind the last recorder too, so no description outlives it.
    describe(nil);
    return static_cast<int>([m_devices count]);
  }
  void* DeviceAt(int index) override {
    return [m_devices objectAtIndex:static_cast<NSUInteger>(index)];
  }
  const char* VendorName(void* device) override { return nameOf(device, DRDeviceVendorNameKey); }
  const char* ProductName(void* device) override { return nameOf(device, DRDeviceProductNameKey); }
  bool IsValid(void* device) override { return [static_cast<DRDevice*>(device) isValid] != NO; }
  bool AcquireExclusiveAccess(void* device) override {
    return [static_cast<DRDevice*>(device) acquireExclusiveAccess] != NO;
  }
  void ReleaseExclusiveAccess(void* device) override {
    [static_cast<DRDevice*>(device) releaseExclusiveAccess];
    [m_delegate release];
    m_delegate = nil;
  }
  void* BurnForDevice(void* device) override {
    return [DRBurn burnForDevice:static_cast<DRDevice*>(device)];
  }
  void SetProperties(void* burn, const DiscBurnProperties* properties) override {
    [static_cast<DRBurn*>(burn) setProperties:burnDictionary(*properties)];
  }
  void RunProgressPanel(void* burn, const DiscTrack* tracks, int count) override {
    const auto capacity = static_cast<NSUInteger>(std::max(count, 1));
    NSMutableArray* const layout = [NSMutableArray arrayWithCapacity:capacity];
    for (int i = 0; i < count; ++i) {
      DRTrack* const track = newTrack(tracks[i]);
      [layout addObject:track];
      [track release];
    }
    m_delegate = [[QuinloCDBurnDel alloc] init];
    DRBurnProgressPanel* const panel = [DRBurnProgressPanel progressPanel];
    // Its methods are informal: the delegate declares no protocol.
    [panel setDelegate:static_cast<id>(m_delegate)];
    [panel setVerboseProgressStatus:YES];
    [panel beginProgressPanelForBurn:static_cast<DRBurn*>(burn) layout:layout];
    runModally(panel);
  }

 private:
  /// One name out of a recorder's description, which is asked for once per recorder and round, and
  /// kept until the next: both names are to be valid together.
  const char* nameOf(void* device, NSString* key) {
    if (m_described != device) describe(static_cast<DRDevice*>(device));
    return [static_cast<NSString*>([m_description objectForKey:key]) UTF8String];
  }

  void describe(DRDevice* device) {
    [m_description release];
    m_described = device;
    m_description = [[device info] retain];
  }

  // The list and its recorders belong to the caller's autorelease pool, and are set anew before
  // each use.
  NSArray* m_devices = nullptr;
  DRDevice* m_described = nullptr;
  NSDictionary* m_description = nullptr;  ///< retained, of `m_described`
  QuinloCDBurnDel* m_delegate = nullptr;  ///< the panel's, from the run until access is given back
};

// The service has no constructor that would have to run: static constructors run before the
// Objective-C runtime knows the classes of this file.
constinit AppleDiscRecording g_service;

}  // namespace

DiscRecordingService* platformFindDiscRecording() {
  g_service.findDevices();
  return &g_service;
}
