// The system log: for what goes wrong before there is a host to tell.
#pragma once

/// Logs one line; `line` ends with a line break. Any thread.
extern "C" void platformSystemLog(const char* line);
