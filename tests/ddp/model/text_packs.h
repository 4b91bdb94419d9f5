// The packs of CD-TEXT as the lead-in carries them, made a second time.
#pragma once

#include <string>

#include "tests/ddp/model/reference_set.h"

namespace ddp_model {

/// Packs of 18 bytes each; empty when neither the disc nor a track has a text.
std::string textPacks(const ModelDisc& disc);

}  // namespace ddp_model
