// Doubles of DiscRecording's classes. They answer from `theFrameworks` and write down what they are
// asked.
#import <DiscRecording/DiscRecording.h>
#import <DiscRecordingUI/DiscRecordingUI.h>

#include "tests/module/mac/doubles/framework_state.h"
#import "tests/module/mac/doubles/named_constant.h"

using doubles::Device;
using doubles::Properties;
using doubles::theFrameworks;

@implementation NamedConstant
// Dictionaries copy their keys as they take them: that is how the order is known.
- (id)copyWithZone:(NSZone*)zone {
  (void)zone;
  theFrameworks().inserted_keys.push_back(name);
  return [self retain];
}
@end

static std::string textOf(id value) {
  if ([value isKindOfClass:[NamedConstant class]]) return static_cast<NamedConstant*>(value)->name;
  NSNumber* const number = static_cast<NSNumber*>(value);
  const std::string type = [number objCType];
  return (type == "i" ? "i " : "bool ") + std::to_string([number intValue]);
}

static Properties propertiesOf(NSDictionary* dictionary) {
  Properties properties;
  NSArray* const keys = [dictionary allKeys];
  for (const std::string& name : theFrameworks().inserted_keys) {
    for (NSUInteger i = 0; i < [keys count]; ++i) {
      NamedConstant* const key = [keys objectAtIndex:i];
      if (name == key->name) {
        properties.emplace_back(name, textOf([dictionary objectForKey:static_cast<id>(key)]));
      }
    }
  }
  theFrameworks().inserted_keys.clear();
  return properties;
}

static const Device& deviceOf(id object) {
  static const Device stranger{.name = "a stranger"};
  for (const Device& device : theFrameworks().devices) {
    if (device.object == object) return device;
  }
  return stranger;
}

// A recorder's description, as far as the module reads it.
@interface Description : NSObject {
 @public
  NSMutableDictionary* values;
}
- (id)objectForKey:(id)key;
@end

@implementation Description
- (id)init {
  self = [super init];
  values = [[NSMutableDictionary alloc] init];
  ++theFrameworks().created["Description"];
  return self;
}
- (id)objectForKey:(id)key {
  theFrameworks().description_holders.push_back([self retainCount]);
  return [values objectForKey:key];
}
- (void)dealloc {
  ++theFrameworks().gone["Description"];
  [values release];
  [super dealloc];
}
@end

@implementation DRDevice
+ (NSArray*)devices {
  theFrameworks().note("devices");
  if (!theFrameworks().has_device_list) return nil;
  NSMutableArray* const list = [NSMutableArray array];
  for (const Device& device : theFrameworks().devices)
    [list addObject:static_cast<id>(device.object)];
  return list;
}
- (BOOL)isValid {
  theFrameworks().note("isValid " + deviceOf(self).name);
  return deviceOf(self).valid ? YES : NO;
}
- (NSDictionary*)info {
  const Device& device = deviceOf(self);
  theFrameworks().note("info " + device.name);
  if (!device.has_description) return nil;
  Description* const info = [[[Description alloc] init] autorelease];
  if (device.vendor) {
    [info->values setObject:[NSString stringWithUTF8String:device.vendor->c_str()]
                     forKey:DRDeviceVendorNameKey];
  }
  if (device.product) {
    [info->values setObject:[NSString stringWithUTF8String:device.product->c_str()]
                     forKey:DRDeviceProductNameKey];
  }
  theFrameworks().inserted_keys.clear();
  return static_cast<id>(info);
}
- (BOOL)acquireExclusiveAccess {
  theFrameworks().note("acquireExclusiveAccess " + deviceOf(self).name);
  return deviceOf(self).grants_access ? YES : NO;
}
- (void)releaseExclusiveAccess {
  theFrameworks().note("releaseExclusiveAccess " + deviceOf(self).name);
}
@end

@implementation DRBurn
+ (DRBurn*)burnForDevice:(DRDevice*)device {
  theFrameworks().note("burnForDevice:" + deviceOf(device).name);
  if (!deviceOf(device).gives_burn) return nil;
  ++theFrameworks().created["DRBurn"];
  return [[[DRBurn alloc] init] autorelease];
}
- (void)setProperties:(NSDictionary*)properties {
  theFrameworks().note("DRBurn setProperties:");
  theFrameworks().burn_properties = propertiesOf(properties);
}
- (void)dealloc {
  ++theFrameworks().gone["DRBurn"];
  [super dealloc];
}
@end

@implementation DRTrack
- (id)initWithProducer:(id)producer {
  self = [super init];
  ++theFrameworks().created["DRTrack"];
  theFrameworks().note("initWithProducer:");
  theFrameworks().producers[self] = [producer retain];
  return self;
}
- (void)setProperties:(NSDictionary*)properties {
  theFrameworks().note("DRTrack setProperties:");
  theFrameworks().track_properties[self] = propertiesOf(properties);
}
- (void)dealloc {
  ++theFrameworks().gone["DRTrack"];
  [static_cast<id>(theFrameworks().producers[self]) release];
  [super dealloc];
}
@end

static DRBurnProgressPanel* g_panel;

@implementation DRBurnProgressPanel
+ (DRBurnProgressPanel*)progressPanel {
  theFrameworks().note("progressPanel");
  if (!g_panel) g_panel = [[DRBurnProgressPanel alloc] init];
  return g_panel;
}
- (void)setVerboseProgressStatus:(BOOL)verbose {
  theFrameworks().note(verbose ? "setVerboseProgressStatus:YES" : "setVerboseProgressStatus:NO");
}
- (void)beginProgressPanelForBurn:(DRBurn*)burn layout:(id)layout {
  theFrameworks().note(burn ? "beginProgressPanelForBurn:layout:" : "begin without a burn");
  for (NSUInteger i = 0; i < [layout count]; ++i) {
    theFrameworks().layout.push_back([layout objectAtIndex:i]);
  }
}
@end
