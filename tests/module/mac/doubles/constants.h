// The framework's constants. Their values are not public: here each is an object that knows its
// name.
#pragma once

namespace doubles {

/// Gives each constant the object that `make` makes for its name.
void nameConstants(void* (*make)(const char* name));

}  // namespace doubles
