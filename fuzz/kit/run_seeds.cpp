// Runs a fuzz target over the files of a folder once each: its seeds as a plain test, or one
// finding again.
#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include "fuzz/kit/fuzz_target.h"

namespace {

std::vector<std::filesystem::path> filesAt(const std::filesystem::path& place) {
  if (!std::filesystem::is_directory(place)) return {place};
  std::vector<std::filesystem::path> files;
  for (const auto& entry : std::filesystem::directory_iterator(place)) {
    if (entry.is_regular_file()) files.push_back(entry.path());
  }
  std::sort(files.begin(), files.end());
  return files;
}

bool run(const std::filesystem::path& path) {
  std::ifstream file(path, std::ios::binary);
  if (!file) {
    fprintf(stderr, "cannot read %s\n", path.c_str());
    return false;
  }
  // Said first: it names the input when the run ends in it.
  printf("%s\n", path.filename().c_str());
  fflush(stdout);
  const std::vector<char> bytes{std::istreambuf_iterator<char>(file), {}};
  LLVMFuzzerTestOneInput(reinterpret_cast<const uint8_t*>(bytes.data()), bytes.size());
  return true;
}

}  // namespace

int main(int argc, char** argv) {
  int inputs = 0;
  for (int i = 1; i < argc; ++i) {
    for (const auto& path : filesAt(argv[i])) {
      if (!run(path)) return 1;
      ++inputs;
    }
  }
  if (inputs == 0) {
    fprintf(stderr, "usage: %s FILE-OR-FOLDER...; there is no input in what was named\n", argv[0]);
    return 2;
  }
  printf("%d inputs\n", inputs);
  return 0;
}
