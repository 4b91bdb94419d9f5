#include "tests/host/render/program/program.h"

namespace render_test {

namespace {

std::vector<std::string> commandLine(const std::string& program,
                                     const std::vector<std::string>& arguments) {
  std::vector<std::string> words = {program};
  words.insert(words.end(), arguments.begin(), arguments.end());
  return words;
}

test_kit::ProcessOptions optionsFor(const Scratch& home, void (*limits)()) {
  test_kit::ProcessOptions options;
  options.environment = test_kit::environmentWith({"HOME=" + home.path().string()});
  options.in_child = limits;
  return options;
}

}  // namespace

Running::Running(const std::string& program, const std::vector<std::string>& arguments,
                 void (*limits)())
    : m_process(commandLine(program, arguments), optionsFor(m_home, limits)) {}

Ended render(const std::vector<std::string>& arguments, void (*limits)()) {
  return Running(VELMOR_BINARY_DIR "/velmor-render", arguments, limits).wait();
}

Ended run(const std::string& program, const std::vector<std::string>& arguments) {
  return Running(program, arguments).wait();
}

bool isInstalled(const std::string& program) {
  return !test_kit::findProgram(program).empty();
}

std::string readFile(const std::string& path) {
  return test_kit::contentOf(path);
}

}  // namespace render_test
