// Doubles of AppKit's classes.
#import <AppKit/AppKit.h>

#include "tests/module/mac/doubles/desk.h"

using doubles::TheDesk;

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
  TheDesk().Note("setDelegate:" + className(delegate));
  TheDesk().panel_delegate = delegate;
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
  TheDesk().Note("isActive");
  return TheDesk().active ? YES : NO;
}
- (void)takeTurn {
  ++TheDesk().turns;
  TheDesk().on_turn();
}
- (NSModalResponse)runModalForWindow:(NSWindow*)window {
  TheDesk().Note("runModalForWindow:" + className(window));
  TheDesk().stopped = false;  // a stop from before the run is lost
  while (!TheDesk().stopped) [self takeTurn];
  return NSModalResponseStop;
}
- (NSModalSession)beginModalSessionForWindow:(NSWindow*)window {
  TheDesk().Note("beginModalSessionForWindow:" + className(window));
  TheDesk().stopped = false;
  return reinterpret_cast<NSModalSession>(self);
}
- (NSModalResponse)runModalSession:(NSModalSession)session {
  const bool ours = session == reinterpret_cast<NSModalSession>(self);
  TheDesk().Note(ours ? "runModalSession:" : "runModalSession: of another");
  [self takeTurn];
  return TheDesk().stopped ? NSModalResponseStop : NSModalResponseContinue;
}
- (void)endModalSession:(NSModalSession)session {
  const bool ours = session == reinterpret_cast<NSModalSession>(self);
  TheDesk().Note(ours ? "endModalSession:" : "endModalSession: of another");
}
- (void)stopModal {
  TheDesk().Note("stopModal");
  TheDesk().stopped = true;
}
@end
