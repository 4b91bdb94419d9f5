// The host's side of the plug-in interface: the project that the module sees, and the functions it
// may call.
#pragma once

#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "abi/host_functions.h"
#include "host/render/input/audio_input.h"

namespace velmor::render {

/// What the module can ask for. Positions are project seconds; the render starts at 0.
struct HostProject {
  std::vector<Mark> marks;                                    ///< ascending
  std::vector<std::pair<std::string, std::string>> metadata;  ///< "CUE:DISC_TITLE", …
};

/// The project that the functions answer from; must outlive the module's calls. One at a time.
void openProject(const HostProject& project);

/// A host function by name, null when this host has none.
void* hostFunction(const char* name);

/// How many functions the module has asked for so far.
int hostFunctionsAskedFor();

/// The first failure the module has reported of its writing since `openProject`, one of the
/// counters' codes.
std::optional<int> writeFailure();

/// The host's ini file; its folder may have to be made first.
std::string iniFilePath();

}  // namespace velmor::render
