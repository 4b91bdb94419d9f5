// A constant of the framework: knows its name, and notes when a dictionary takes it as a key.
#pragma once

#import <Foundation/Foundation.h>

@interface NamedConstant : NSObject {
 @public
  const char* name;
}
@end
