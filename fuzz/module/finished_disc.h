// What holds of the two files of every finished render, whatever went in.
#pragma once

#include <string>

namespace fuzz {

/// Requires an image of whole sectors, `seconds` long up to the frames that silences of odd length
/// do not count, and a sheet of at least one track, numbered from 1, each with one INDEX 01, none
/// before the one of the track before or behind the image's end.
void requireWholeDisc(const std::string& sheet_path, const std::string& image_path, double seconds);

/// Requires that nobody holds the file open for writing: the writer's lock is gone.
void requireClosed(const std::string& path);

}  // namespace fuzz
