#import <Foundation/Foundation.h>

#include "module/platform/system_log.h"

void platformSystemLog(const char* line) {
  NSLog(@"%s", line);
}
