// What the module uses of AppKit: the application object, windows, modal runs.
#pragma once

#import <Foundation/Foundation.h>

typedef NSInteger NSModalResponse;
typedef struct VelmorModalSession* NSModalSession;

enum : NSModalResponse {
  NSModalResponseStop = -1000,
  NSModalResponseAbort = -1001,
  NSModalResponseContinue = -1002,
};

@interface NSWindow : NSObject
- (void)setDelegate:(id)delegate;
@end

@interface NSPanel : NSWindow
@end

@interface NSApplication : NSObject
- (id)delegate;
- (BOOL)isActive;
- (NSModalResponse)runModalForWindow:(NSWindow*)window;
- (NSModalSession)beginModalSessionForWindow:(NSWindow*)window;
- (NSModalResponse)runModalSession:(NSModalSession)session;
- (void)endModalSession:(NSModalSession)session;
- (void)stopModal;
@end

extern "C" NSApplication* NSApp;
