// The host's side of the plug-in interface: the functions that the module may call.
#pragma once

#include <optional>

#include "abi/host_functions.h"
#include "host/render/album/host_project.h"

namespace velmor::render {

/// Has the functions answer from `project`, which must outlive the module's calls, and forgets the
/// write failure of the render before. One project at a time; the thread that calls the module.
void openProject(const HostProject& project);

/// A host function by name, null when this host has none. `name` is not null.
void* hostFunction(const char* name);

/// How many functions the module has asked for since the process began.
int hostFunctionsAskedFor();

/// The first failure the module has reported of its writing since `openProject`, one of the codes
/// of `update_disk_counters`.
std::optional<int> writeFailure();

}  // namespace velmor::render
