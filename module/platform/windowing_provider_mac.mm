#import <Cocoa/Cocoa.h>

#include "module/platform/windowing_provider.h"

// In a host with the windowing layer the application's delegate has this method.
@interface NSObject (QuelmProvider)
- (QuelmLookupFn)quelmGetAPPAPIFunc;
@end

QuelmLookupFn platformFindWindowingProvider() {
  const id delegate = [NSApp delegate];
  if (![delegate respondsToSelector:@selector(quelmGetAPPAPIFunc)]) return nullptr;
  return [delegate quelmGetAPPAPIFunc];
}
