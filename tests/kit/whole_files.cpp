#include "tests/kit/whole_files.h"

#include <fstream>
#include <sstream>
#include <stdexcept>
#include <utility>

namespace test_kit {

namespace {

std::string restOf(const std::ifstream& in) {
  std::ostringstream text;
  text << in.rdbuf();
  return std::move(text).str();
}

}  // namespace

std::string readFile(const std::filesystem::path& path) {
  std::ifstream in(path, std::ios::binary);
  if (!in) throw std::runtime_error("cannot read " + path.string());
  return restOf(in);
}

std::string contentOf(const std::filesystem::path& path) {
  std::ifstream in(path, std::ios::binary);
  return restOf(in);
}

void writeFile(const std::filesystem::path& path, const std::string& bytes) {
  std::ofstream out(path, std::ios::binary);
  out << bytes << std::flush;
  if (!out) throw std::runtime_error("cannot write " + path.string());
}

}  // namespace test_kit
