// The blocks that watched code has taken from the allocator and not given back.
#pragma once

namespace test_kit {

/// How many there are: taken while a `SystemCalls` watched, by code that it watches, and not freed
/// since, by whomever. Equal before and after a piece of work that leaks nothing.
int liveBlocks();

/// For the allocator's definitions: `block` is somebody's from now on.
void noteTaken(const void* block);
/// It is nobody's any more; whether it was noted.
bool noteGivenBack(const void* block);

}  // namespace test_kit
