// What the loader does in another way on each processor: one file for each.
#pragma once

#include <string>

#include "tools/mac/macho/mach_o_file.h"

namespace loader {

/// The processor whose slice runs in this process.
extern const macho::Processor kThisProcessor;

/// Functions with a variable list of arguments, as code for macOS calls them on this processor;
/// null for one that Linux's own serves as it is.
void* variadicSymbol(const std::string& symbol);

/// Goes from a message to its method with every argument left where it is.
extern "C" void loaderSendMessage();
/// Whom it asks for the method.
extern "C" void* loaderFindMethod(void* receiver, const char* selector);

}  // namespace loader
