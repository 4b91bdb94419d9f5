#include <syslog.h>

#include <cstdio>

#include "module/platform/system_log.h"

void platformSystemLog(const char* line) {
  syslog(LOG_USER | LOG_ERR, "%s", line);
  fputs(line, stderr);
}
