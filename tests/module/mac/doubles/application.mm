// Doubles of AppKit's classes.
#import <AppKit/AppKit.h>

#include "tests/module/mac/doubles/framework_state.h"

using doubles::TheFrameworks;

NSApplication* NSApp;
static id g_delegate;

static std::string className(id object) {
  return [NSStringFromClass([object class]) UTF8String];
}

@interface NSApplication (Double)
- (void)setDelegate:(id)delegate;
- (void)takeTurn;
@end

@implementation NSWindow
- (void)setDelegate:(id)delegate {
  TheFrameworks().Note("setDelegate:" + className(delegate));
  TheFrameworks().panel_delegate = delegate;
}
@end

@implementation NSPanel
@end

@implementation NSApplication
- (id)delegate {
  return g_delegate;
}
- (void)setDelegate:(id)delegate {
  g_delegate = delegate;
}
- (BOOL)isActive {
  TheFrameworks().Note("isActive");
  return TheFrameworks().active ? YES : NO;
}
- (void)takeTurn {
  ++TheFrameworks().turns;
  TheFrameworks().on_turn();
}
- (NSModalResponse)runModalForWindow:(NSWindow*)window {
  TheFrameworks().Note("runModalForWindow:" + className(window));
  TheFrameworks().stopped = false;  // a stop from before the run is lost
  while (!TheFrameworks().stopped) [self takeTurn];
  return NSModalResponseStop;
}
- (NSModalSession)beginModalSessionForWindow:(NSWindow*)window {
  TheFrameworks().Note("beginModalSessionForWindow:" + className(window));
  TheFrameworks().stopped = false;
  return reinterpret_cast<NSModalSession>(self);
}
- (NSModalResponse)runModalSession:(NSModalSession)session {
  const bool ours = session == reinterpret_cast<NSModalSession>(self);
  TheFrameworks().Note(ours ? "runModalSession:" : "runModalSession: of another");
  [self takeTurn];
  return TheFrameworks().stopped ? NSModalResponseStop : NSModalResponseContinue;
}
- (void)endModalSession:(NSModalSession)session {
  const bool ours = session == reinterpret_cast<NSModalSession>(self);
  TheFrameworks().Note(ours ? "endModalSession:" : "endModalSession: of another");
}
- (void)stopModal {
  TheFrameworks().Note("stopModal");
  TheFrameworks().stopped = true;
}
@end
