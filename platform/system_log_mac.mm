#import <Foundation/Foundation.h>

#include "platform/system_log.h"

void platform_system_log(const char* line) {
  NSLog(@"%s", line);
}
