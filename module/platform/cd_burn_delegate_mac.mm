#import "module/platform/cd_burn_delegate_mac.h"

@implementation QuinloCDBurnDel

- (BOOL)burnProgressPanel:(DRBurnProgressPanel*)panel burnDidFinish:(DRBurn*)burn {
  (void)panel, (void)burn;
  return NO;
}

- (void)burnProgressPanelDidFinish:(NSNotification*)notification {
  (void)notification;
  [NSApp stopModal];
}

@end
