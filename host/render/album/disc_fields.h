// The disc's own texts.
#pragma once

#include <string>
#include <utility>
#include <vector>

#include "host/render/options/options.h"

namespace velmor::render {

struct AlbumInput;

/// The tag that all inputs share, empty when one differs or has none.
std::string sharedTag(const std::vector<AlbumInput>& inputs, std::string Tags::*tag);

/// The given texts. A title, performer or songwriter that was not given is taken from the inputs'
/// tags if all inputs have the same.
AlbumTexts discTexts(const AlbumTexts& given, const std::vector<AlbumInput>& inputs);

/// The texts under the keys by which the module asks for them, like "CUE:DISC_TITLE", made fit for
/// the sheet. Adds a warning for each text that is changed or has no place in the sheet.
std::vector<std::pair<std::string, std::string>> sinkMetadata(const AlbumTexts& texts,
                                                              std::vector<std::string>& warnings);

/// What the field under such a key is called in messages: "disc's title".
std::string fieldForPeople(const std::string& key);

}  // namespace velmor::render
