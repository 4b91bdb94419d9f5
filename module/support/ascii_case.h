// Texts compared without regard to case, whatever the locale of the host's process.
#pragma once

#include <cstddef>
#include <cstdint>

/// Compares two texts, or at most their first `length` bytes, as unsigned bytes in which A to Z
/// count as a to z: negative, 0 or positive. The C library's comparison follows the locale that a
/// host has set, and in a Turkish one "isrc" is not "ISRC".
int compareIgnoringCase(const char* a, const char* b, size_t length = SIZE_MAX);
