// The disc's own texts.
#pragma once

#include <string>
#include <utility>
#include <vector>

#include "host/render/options/options.h"

namespace velmor::render {

struct AlbumInput;

/// The texts given, the title, performer and songwriter filled from the inputs' tags where those
/// agree.
AlbumTexts discTexts(const AlbumTexts& given, const std::vector<AlbumInput>& inputs);

/// The texts as the module asks for them, keys like "CUE:DISC_TITLE".
std::vector<std::pair<std::string, std::string>> sinkMetadata(const AlbumTexts& texts,
                                                              std::vector<std::string>& warnings);

}  // namespace velmor::render
