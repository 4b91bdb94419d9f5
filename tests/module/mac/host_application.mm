// Makes a test program on a Mac an application whose delegate offers the tests' windowing layer, as
// a workstation's does.
#import <Cocoa/Cocoa.h>

#include "abi/quelm_provider.h"

extern "C" QuelmLookupFn quelmGetAPPAPIFunc();

@interface TestHostDelegate : NSObject <NSApplicationDelegate>
- (QuelmLookupFn)quelmGetAPPAPIFunc;
@end

@implementation TestHostDelegate
- (QuelmLookupFn)quelmGetAPPAPIFunc {
  return quelmGetAPPAPIFunc();
}
@end

__attribute__((constructor)) static void becomeAnApplication() {
  [NSApplication sharedApplication];
  [NSApp setDelegate:[[TestHostDelegate alloc] init]];
}
