// The umbrella of Foundation and AppKit.
#pragma once

#import <AppKit/AppKit.h>
#import <Foundation/Foundation.h>
