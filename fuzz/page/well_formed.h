// What must hold of every page, whatever texts it shows.
#pragma once

#include <string>

namespace fuzz {

/// Every element of `html` ends where it should, no id stands twice, every link has its target in
/// the page, nothing is a script, and there is no control character.
void requireWellFormed(const std::string& html);

}  // namespace fuzz
