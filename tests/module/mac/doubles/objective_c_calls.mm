#include "tests/module/mac/doubles/objective_c_calls.h"

#import <AppKit/AppKit.h>
#import <DiscRecording/DiscRecording.h>
#import <DiscRecordingUI/DiscRecordingUI.h>
#import <objc/runtime.h>

#include <cstdlib>
#include <cstring>

#include "abi/quelm_provider.h"
#include "tests/module/mac/doubles/constants.h"
#import "tests/module/mac/doubles/named_constant.h"

extern "C" QuelmLookupFn quelmGetAPPAPIFunc();

@interface NSApplication (ModuleLoading)
- (void)setDelegate:(id)delegate;
@end

@interface HostDelegate : NSObject
@end
@implementation HostDelegate
- (QuelmLookupFn)quelmGetAPPAPIFunc {
  return quelmGetAPPAPIFunc();
}
@end

// What the panel says to its delegate.
@interface NSObject (PanelDelegate)
- (BOOL)burnProgressPanel:(DRBurnProgressPanel*)panel burnDidFinish:(DRBurn*)burn;
- (void)burnProgressPanelDidFinish:(NSNotification*)notification;
@end

namespace doubles {

namespace {

void* makeConstant(const char* name) {
  NamedConstant* const constant = [[NamedConstant alloc] init];
  constant->name = name;
  return constant;
}

void keepLogLine(NSString* text) {
  // "2026-01-01 00:00:00.000 program[1:1] the line"
  const std::string line = [text UTF8String];
  const size_t prefix = line.find("] ");
  theFrameworks().log_lines.push_back(prefix == std::string::npos ? line : line.substr(prefix + 2));
}

IMP g_root_alloc;
IMP g_root_dealloc;
IMP g_array_with_capacity;
IMP g_number_with_int;
IMP g_number_with_unsigned;
IMP g_number_with_bool;

bool isOfTheModule(Class counted) {
  return strncmp(class_getName(counted), "Quinlo", 6) == 0;
}

// In the root class, where they serve all others too: adding methods to the module's classes is
// more than this runtime can do for what clang compiles.
id countedAlloc(id class_object, SEL selector) {
  const Class counted = reinterpret_cast<Class>(class_object);
  if (isOfTheModule(counted)) ++theFrameworks().created[class_getName(counted)];
  return reinterpret_cast<id (*)(id, SEL)>(g_root_alloc)(class_object, selector);
}

// Returns what nobody looks at: methods are kept as functions that return an object.
id countedDealloc(id object, SEL selector) {
  const Class counted = object_getClass(object);
  if (isOfTheModule(counted)) {
    ++theFrameworks().gone[class_getName(counted)];
    theFrameworks().note(std::string("dealloc ") + class_getName(counted));
  }
  return reinterpret_cast<id (*)(id, SEL)>(g_root_dealloc)(object, selector);
}

id notedArray(id class_object, SEL selector, NSUInteger capacity) {
  theFrameworks().array_capacities.push_back(capacity);
  return reinterpret_cast<id (*)(id, SEL, NSUInteger)>(g_array_with_capacity)(class_object,
                                                                              selector, capacity);
}

id notedInt(id class_object, SEL selector, int value) {
  theFrameworks().numbers.push_back("int " + std::to_string(value));
  return reinterpret_cast<id (*)(id, SEL, int)>(g_number_with_int)(class_object, selector, value);
}

id notedUnsigned(id class_object, SEL selector, unsigned value) {
  theFrameworks().numbers.push_back("unsigned " + std::to_string(value));
  return reinterpret_cast<id (*)(id, SEL, unsigned)>(g_number_with_unsigned)(class_object, selector,
                                                                             value);
}

id notedBool(id class_object, SEL selector, BOOL value) {
  theFrameworks().numbers.push_back(value ? "bool 1" : "bool 0");
  return reinterpret_cast<id (*)(id, SEL, BOOL)>(g_number_with_bool)(class_object, selector, value);
}

template <class Function>
IMP replaceClassMethod(Class owner, SEL selector, Function* function) {
  return method_setImplementation(class_getClassMethod(owner, selector),
                                  reinterpret_cast<IMP>(function));
}

}  // namespace

void setUpProcess(Application application) {
  [[NSAutoreleasePool alloc] init];
  nameConstants(&makeConstant);
  _NSLog_printf_handler = &keepLogLine;
  const Class root = [NSObject class];
  g_root_alloc = replaceClassMethod(root, @selector(alloc), &countedAlloc);
  g_root_dealloc = method_setImplementation(class_getInstanceMethod(root, @selector(dealloc)),
                                            reinterpret_cast<IMP>(&countedDealloc));
  g_array_with_capacity =
      replaceClassMethod([NSMutableArray class], @selector(arrayWithCapacity:), &notedArray);
  g_number_with_int = replaceClassMethod([NSNumber class], @selector(numberWithInt:), &notedInt);
  g_number_with_unsigned =
      replaceClassMethod([NSNumber class], @selector(numberWithUnsignedInt:), &notedUnsigned);
  g_number_with_bool = replaceClassMethod([NSNumber class], @selector(numberWithBool:), &notedBool);
  if (application == Application::kMissing) return;
  NSApp = [[NSApplication alloc] init];
  if (application == Application::kDelegateWithoutProvider) {
    [NSApp setDelegate:[[NSObject alloc] init]];
  } else if (application == Application::kDelegateWithProvider) {
    [NSApp setDelegate:[[HostDelegate alloc] init]];
  }
}

void setDevices(const std::vector<Device>& devices) {
  for (const Device& device : theFrameworks().devices) [static_cast<id>(device.object) release];
  theFrameworks() = FrameworkState();
  theFrameworks().devices = devices;
  for (Device& device : theFrameworks().devices) device.object = [[DRDevice alloc] init];
  theFrameworks().on_turn = finishBurn;
}

Pool::Pool() : m_pool([[NSAutoreleasePool alloc] init]) {}

Pool::~Pool() {
  [static_cast<NSAutoreleasePool*>(m_pool) release];
}

void finishBurn() {
  const id delegate = static_cast<id>(theFrameworks().panel_delegate);
  theFrameworks().delegate_reports_itself = [delegate burnProgressPanel:nil
                                                          burnDidFinish:nil] != NO;
  [delegate burnProgressPanelDidFinish:nil];
}

using Source = NSObject<DRTrackDataProduction>;

bool Producer::conformsToProtocol() const {
  // By name, as found in the class's own list.
  unsigned count = 0;
  Protocol** const protocols =
      class_copyProtocolList([static_cast<Source*>(m_object) class], &count);
  bool conforms = false;
  for (unsigned i = 0; i < count; ++i) {
    conforms = conforms || strcmp(protocol_getName(protocols[i]), "DRTrackDataProduction") == 0;
  }
  free(protocols);
  return conforms;
}

int Producer::variable(const char* name) const {
  const Ivar variable = class_getInstanceVariable([static_cast<Source*>(m_object) class], name);
  int value;
  memcpy(&value, static_cast<const char*>(m_object) + ivar_getOffset(variable), sizeof value);
  return value;
}

uint64_t Producer::estimateLength() const {
  return [static_cast<Source*>(m_object) estimateLengthOfTrack:nil];
}

bool Producer::prepare() const {
  return [static_cast<Source*>(m_object) prepareTrack:nil forBurn:nil toMedia:nil] != NO;
}

void Producer::cleanUpAfterBurn() const {
  [static_cast<Source*>(m_object) cleanupTrackAfterBurn:nil];
}

uint32_t Producer::producePreGap(char* buffer, uint32_t length) const {
  uint32_t flags = 0;
  return [static_cast<Source*>(m_object) producePreGapForTrack:nil
                                                    intoBuffer:buffer
                                                        length:length
                                                     atAddress:0
                                                     blockSize:2352
                                                       ioFlags:&flags];
}

uint32_t Producer::produceData(char* buffer, uint32_t length) const {
  uint32_t flags = 0;
  return [static_cast<Source*>(m_object) produceDataForTrack:nil
                                                  intoBuffer:buffer
                                                      length:length
                                                   atAddress:0
                                                   blockSize:2352
                                                     ioFlags:&flags];
}

bool Producer::prepareForVerification() const {
  return [static_cast<Source*>(m_object) prepareTrackForVerification:nil] != NO;
}

bool Producer::verifyPreGap(const char* buffer, uint32_t length) const {
  uint32_t flags = 0;
  return [static_cast<Source*>(m_object) verifyPreGapForTrack:nil
                                                     inBuffer:buffer
                                                       length:length
                                                    atAddress:0
                                                    blockSize:2352
                                                      ioFlags:&flags] != NO;
}

bool Producer::verifyData(const char* buffer, uint32_t length) const {
  uint32_t flags = 0;
  return [static_cast<Source*>(m_object) verifyDataForTrack:nil
                                                   inBuffer:buffer
                                                     length:length
                                                  atAddress:0
                                                  blockSize:2352
                                                    ioFlags:&flags] != NO;
}

bool Producer::cleanUpAfterVerification() const {
  return [static_cast<Source*>(m_object) cleanupTrackAfterVerification:nil] != NO;
}

Producer producerOf(int index) {
  return Producer(
      theFrameworks().producers.at(theFrameworks().layout.at(static_cast<size_t>(index))));
}

const Properties& propertiesOf(int index) {
  return theFrameworks().track_properties.at(theFrameworks().layout.at(static_cast<size_t>(index)));
}

}  // namespace doubles
