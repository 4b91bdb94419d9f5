// Doubles of AppKit's classes.
#import <AppKit/AppKit.h>

#include "tests/module/mac/doubles/framework_state.h"

using doubles::theFrameworks;

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
  theFrameworks().note("setDelegate:" + className(delegate));
  theFrameworks().panel_delegate = delegate;
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
  theFrameworks().note("isActive");
  return theFrameworks().active ? YES : NO;
}
- (void)takeTurn {
  ++theFrameworks().turns;
  theFrameworks().on_turn();
}
- (NSModalResponse)runModalForWindow:(NSWindow*)window {
  theFrameworks().note("runModalForWindow:" + className(window));
  theFrameworks().stopped = false;  // a stop from before the run is lost
  while (!theFrameworks().stopped) [self takeTurn];
  return NSModalResponseStop;
}
- (NSModalSession)beginModalSessionForWindow:(NSWindow*)window {
  theFrameworks().note("beginModalSessionForWindow:" + className(window));
  theFrameworks().stopped = false;
  return reinterpret_cast<NSModalSession>(self);
}
- (NSModalResponse)runModalSession:(NSModalSession)session {
  const bool ours = session == reinterpret_cast<NSModalSession>(self);
  theFrameworks().note(ours ? "runModalSession:" : "runModalSession: of another");
  if (theFrameworks().aborts) return NSModalResponseAbort;
  [self takeTurn];
  return theFrameworks().stopped ? NSModalResponseStop : NSModalResponseContinue;
}
- (void)endModalSession:(NSModalSession)session {
  const bool ours = session == reinterpret_cast<NSModalSession>(self);
  theFrameworks().note(ours ? "endModalSession:" : "endModalSession: of another");
}
- (void)stopModal {
  theFrameworks().note("stopModal");
  theFrameworks().stopped = true;
}
@end
