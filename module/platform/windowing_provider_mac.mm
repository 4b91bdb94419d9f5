#import <Cocoa/Cocoa.h>

#include "module/platform/windowing_provider.h"

// What the application's delegate of a host with the windowing layer answers to.
@interface NSObject (QuelmProvider)
- (QuelmLookupFn)quelmGetAPPAPIFunc;
@end

QuelmLookupFn platformFindWindowingProvider() {
  const id delegate = [NSApp delegate];
  if (![delegate respondsToSelector:@selector(quelmGetAPPAPIFunc)]) return nullptr;
  return [delegate quelmGetAPPAPIFunc];
}
