// The machine's recorders: found by what the user calls them, and listed for the user.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "disc/failure.h"
#include "host/recording/interface/recording_service.h"

namespace velmor::render {

/// The drive that `wanted` names: its number in the list, its device file, or a part of its name in
/// letters of either case. Throws `Failure` when that is none or more than one.
size_t chooseDrive(const std::vector<recording::ListedDrive>& drives, const std::string& wanted);

/// Prints the drives with what is in them on standard output, for people or as one JSON object.
void listDrives(recording::Service& service, bool json);

}  // namespace velmor::render
