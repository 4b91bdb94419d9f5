// Doubles of DiscRecording's classes. They answer from `TheFrameworks` and write down what they are
// asked.
#import <DiscRecording/DiscRecording.h>
#import <DiscRecordingUI/DiscRecordingUI.h>

#include "tests/module/mac/doubles/framework_state.h"
#import "tests/module/mac/doubles/named_constant.h"

using doubles::Device;
using doubles::Properties;
using doubles::TheFrameworks;

@implementation NamedConstant
// Dictionaries copy their keys as they take them: that is how the order is known.
- (id)copyWithZone:(NSZone*)zone {
  (void)zone;
  TheFrameworks().inserted_keys.push_back(name);
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
  for (const std::string& name : TheFrameworks().inserted_keys) {
    for (NSUInteger i = 0; i < [keys count]; ++i) {
      NamedConstant* const key = [keys objectAtIndex:i];
      if (name == key->name)
        properties.emplace_back(name, textOf([dictionary objectForKey:static_cast<id>(key)]));
    }
  }
  TheFrameworks().inserted_keys.clear();
  return properties;
}

static const Device& deviceOf(id object) {
  static const Device stranger{.name = "a stranger"};
  for (const Device& device : TheFrameworks().devices) {
    if (device.object == object) return device;
  }
  return stranger;
}

@implementation DRDevice
+ (NSArray*)devices {
  TheFrameworks().Note("devices");
  if (!TheFrameworks().has_device_list) return nil;
  NSMutableArray* const list = [NSMutableArray array];
  for (const Device& device : TheFrameworks().devices)
    [list addObject:static_cast<id>(device.object)];
  return list;
}
- (BOOL)isValid {
  TheFrameworks().Note("isValid " + deviceOf(self).name);
  return deviceOf(self).valid ? YES : NO;
}
- (NSDictionary*)info {
  const Device& device = deviceOf(self);
  TheFrameworks().Note("info " + device.name);
  if (!device.has_description) return nil;
  NSMutableDictionary* const info = [NSMutableDictionary dictionary];
  if (device.vendor) {
    [info setObject:[NSString stringWithUTF8String:device.vendor->c_str()]
             forKey:DRDeviceVendorNameKey];
  }
  if (device.product) {
    [info setObject:[NSString stringWithUTF8String:device.product->c_str()]
             forKey:DRDeviceProductNameKey];
  }
  TheFrameworks().inserted_keys.clear();
  return info;
}
- (BOOL)acquireExclusiveAccess {
  TheFrameworks().Note("acquireExclusiveAccess " + deviceOf(self).name);
  return deviceOf(self).grants_access ? YES : NO;
}
- (void)releaseExclusiveAccess {
  TheFrameworks().Note("releaseExclusiveAccess " + deviceOf(self).name);
}
@end

@implementation DRBurn
+ (DRBurn*)burnForDevice:(DRDevice*)device {
  TheFrameworks().Note("burnForDevice:" + deviceOf(device).name);
  if (!deviceOf(device).gives_burn) return nil;
  ++TheFrameworks().created["DRBurn"];
  return [[[DRBurn alloc] init] autorelease];
}
- (void)setProperties:(NSDictionary*)properties {
  TheFrameworks().Note("DRBurn setProperties:");
  TheFrameworks().burn_properties = propertiesOf(properties);
}
- (void)dealloc {
  ++TheFrameworks().gone["DRBurn"];
  [super dealloc];
}
@end

@implementation DRTrack
- (id)initWithProducer:(id)producer {
  self = [super init];
  ++TheFrameworks().created["DRTrack"];
  TheFrameworks().Note("initWithProducer:");
  TheFrameworks().producers[self] = [producer retain];
  return self;
}
- (void)setProperties:(NSDictionary*)properties {
  TheFrameworks().Note("DRTrack setProperties:");
  TheFrameworks().track_properties[self] = propertiesOf(properties);
}
- (void)dealloc {
  ++TheFrameworks().gone["DRTrack"];
  [static_cast<id>(TheFrameworks().producers[self]) release];
  [super dealloc];
}
@end

static DRBurnProgressPanel* g_panel;

@implementation DRBurnProgressPanel
+ (DRBurnProgressPanel*)progressPanel {
  TheFrameworks().Note("progressPanel");
  if (!g_panel) g_panel = [[DRBurnProgressPanel alloc] init];
  return g_panel;
}
- (void)setVerboseProgressStatus:(BOOL)verbose {
  TheFrameworks().Note(verbose ? "setVerboseProgressStatus:YES" : "setVerboseProgressStatus:NO");
}
- (void)beginProgressPanelForBurn:(DRBurn*)burn layout:(id)layout {
  TheFrameworks().Note(burn ? "beginProgressPanelForBurn:layout:" : "begin without a burn");
  for (NSUInteger i = 0; i < [layout count]; ++i) {
    TheFrameworks().layout.push_back([layout objectAtIndex:i]);
  }
}
@end
