// The allocator behind the definitions that tests watch.
#pragma once

#include <cstddef>

namespace test_kit {

void* realMalloc(size_t size);
void* realCalloc(size_t count, size_t size);
void* realRealloc(void* block, size_t size);
void realFree(void* block);

}  // namespace test_kit
