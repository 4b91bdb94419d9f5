#include "tests/kit/whole_files.h"

#include <fstream>
#include <iterator>
#include <stdexcept>

namespace test_kit {

std::string readFile(const std::filesystem::path& path) {
  std::ifstream in(path, std::ios::binary);
  if (!in) throw std::runtime_error("cannot read " + path.string());
  return {std::istreambuf_iterator<char>(in), {}};
}

std::string contentOf(const std::filesystem::path& path) {
  std::ifstream in(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(in), {}};
}

void writeFile(const std::filesystem::path& path, const std::string& bytes) {
  std::ofstream out(path, std::ios::binary);
  out << bytes << std::flush;
  if (!out) throw std::runtime_error("cannot write " + path.string());
}

}  // namespace test_kit
