#import <Foundation/Foundation.h>

#include "module/platform/system_log.h"

void platform_system_log(const char* line) {
  NSLog(@"%s", line);
}
