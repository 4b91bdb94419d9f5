// The delegate of the burn progress panel.
#pragma once

#import <Cocoa/Cocoa.h>
#import <DiscRecordingUI/DiscRecordingUI.h>

/// Leaves the report of a burn to the panel, and ends the modal run when the panel is done.
@interface QuinloCDBurnDel : NSObject
- (BOOL)burnProgressPanel:(DRBurnProgressPanel*)panel burnDidFinish:(DRBurn*)burn;
- (void)burnProgressPanelDidFinish:(NSNotification*)notification;
@end
