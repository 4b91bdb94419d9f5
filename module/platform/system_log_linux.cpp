#include <syslog.h>

#include <cassert>
#include <cstdio>
#include <cstring>

#include "module/platform/system_log.h"

void platformSystemLog(const char* line) {
  assert(*line && line[strlen(line) - 1] == '\n');
  syslog(LOG_USER | LOG_ERR, "%s", line);
  fputs(line, stderr);
}
