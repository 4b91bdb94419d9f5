// Folders and files of one test.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "tests/kit/scratch_folder.h"

namespace fake_host {

using TempFolder = test_kit::ScratchFolder;

/// The whole file; a file that cannot be read fails the test and gives an empty text.
std::string readText(const std::string& path);
/// The 16-bit little-endian samples of an image, interleaved. An odd last byte fails the test.
std::vector<int16_t> readSamples(const std::string& path);
void writeText(const std::string& path, const std::string& text);
/// Bytes in which no two stretches are alike.
std::string noise(size_t count, unsigned seed = 1);
bool fileExists(const std::string& path);
int64_t sizeOfFile(const std::string& path);
/// How many descriptors the process holds open.
int openDescriptors();

}  // namespace fake_host
