// Toy versions of the frameworks' classes. They answer from what a Linux process offers the module
// instead: the application's delegate gives the process's windowing provider, and recorders, burns
// and tracks go to and come from its disc recording service.
#pragma once

#include <string>

namespace loader {

/// Classes, constants and functions of Cocoa and DiscRecording; null when there is none of that
/// name.
void* frameworkSymbol(const std::string& symbol);

/// NSLog() with one line of text, for whatever way it is called in. `format` is a constant string
/// of the dylib's.
void logLine(const void* format, const char* line);

}  // namespace loader
