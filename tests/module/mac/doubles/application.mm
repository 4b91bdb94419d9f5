// Doubles of AppKit's classes.
#import <AppKit/AppKit.h>

#include "tests/module/mac/doubles/desk.h"

using doubles::theDesk;

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
  theDesk().note("setDelegate:" + className(delegate));
  theDesk().panel_delegate = delegate;
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
  theDesk().note("isActive");
  return theDesk().active ? YES : NO;
}
- (void)takeTurn {
  ++theDesk().turns;
  theDesk().on_turn();
}
- (NSModalResponse)runModalForWindow:(NSWindow*)window {
  theDesk().note("runModalForWindow:" + className(window));
  theDesk().stopped = false;  // a stop from before the run is lost
  while (!theDesk().stopped) [self takeTurn];
  return NSModalResponseStop;
}
- (NSModalSession)beginModalSessionForWindow:(NSWindow*)window {
  theDesk().note("beginModalSessionForWindow:" + className(window));
  theDesk().stopped = false;
  return reinterpret_cast<NSModalSession>(self);
}
- (NSModalResponse)runModalSession:(NSModalSession)session {
  const bool ours = session == reinterpret_cast<NSModalSession>(self);
  theDesk().note(ours ? "runModalSession:" : "runModalSession: of another");
  [self takeTurn];
  return theDesk().stopped ? NSModalResponseStop : NSModalResponseContinue;
}
- (void)endModalSession:(NSModalSession)session {
  const bool ours = session == reinterpret_cast<NSModalSession>(self);
  theDesk().note(ours ? "endModalSession:" : "endModalSession: of another");
}
- (void)stopModal {
  theDesk().note("stopModal");
  theDesk().stopped = true;
}
@end
