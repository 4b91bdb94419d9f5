// What a sheet's FLAGS say, as a set has it.
#pragma once

#include "disc/ddp/set_layout.h"
#include "disc/sheet/sheet.h"

namespace velmor::ddp {

/// Words that are no flags are passed over.
TrackFlags flagsOf(const disc::Track& track);

/// The other way round, "DCP PRE"; empty for none.
std::string flagWords(const TrackFlags& flags);

}  // namespace velmor::ddp
