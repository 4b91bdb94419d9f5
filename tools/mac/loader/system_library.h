// macOS's C and C++ libraries as far as the module uses them, over those of Linux.
#pragma once

#include <string>

namespace loader {

/// Null when there is no such function. What differs between the systems (flags, error numbers,
/// records) is translated; everything else is Linux's own.
void* systemSymbol(const std::string& symbol);

/// macOS's open() and fcntl(), for whatever way they are called in.
int openFile(const char* path, int flags, int mode);
int controlFile(int fd, int command, int argument);

}  // namespace loader
