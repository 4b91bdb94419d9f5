// The cue sheet of a disc of the model.
#pragma once

#include <string>

#include "tests/ddp/model/reference_set.h"

namespace ddp_model {

/// A sheet that names one raw image. Its texts are in UTF-8 and in ISO 8859-1 by turns; a byte of
/// the latter has to be followed by an ASCII character, else it might pass for UTF-8.
std::string sheetOf(const ModelDisc& disc, const std::string& image);

}  // namespace ddp_model
