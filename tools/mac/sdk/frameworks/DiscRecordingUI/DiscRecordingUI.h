// What the module uses of Apple DiscRecordingUI.
#pragma once

#import <AppKit/AppKit.h>
#import <DiscRecording/DiscRecording.h>

@interface DRBurnProgressPanel : NSPanel
+ (DRBurnProgressPanel*)progressPanel;
- (void)setVerboseProgressStatus:(BOOL)verbose;
- (void)beginProgressPanelForBurn:(DRBurn*)burn layout:(id)layout;
@end
