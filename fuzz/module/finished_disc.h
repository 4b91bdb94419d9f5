// What holds of the two files of every finished render, whatever went in.
#pragma once

#include <cstddef>
#include <string_view>

namespace fuzz {

/// Requires an image of whole sectors, `seconds` long up to the frames that silences of odd length
/// do not count, and a sheet of at least one track, numbered from 1, each with one INDEX 01, none
/// before the one of the track before or behind the image's end.
void requireWholeDisc(std::string_view sheet, size_t image_bytes, double seconds);

}  // namespace fuzz
