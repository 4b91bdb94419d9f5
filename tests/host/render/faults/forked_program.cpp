#include "tests/host/render/faults/forked_program.h"

#include <fcntl.h>
#include <sys/mman.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <stdexcept>

#include "tests/kit/fork.h"
#include "tests/kit/whole_files.h"

/// The main function of velmor-render, under another name in this program.
int velmorRenderMain(int argc, char** argv);

namespace render_test {

namespace {

constexpr unsigned kLongestRun = 120;  // seconds

/// What is printed on one descriptor, in memory.
class Printed {
 public:
  Printed() : m_file(::memfd_create("printed", MFD_CLOEXEC)) {
    if (m_file < 0) throw std::runtime_error("no memory for what is printed");
  }
  ~Printed() { ::close(m_file); }
  Printed(const Printed&) = delete;
  Printed& operator=(const Printed&) = delete;

  void takeOver(int descriptor) const { ::dup2(m_file, descriptor); }
  std::string text() const { return test_kit::readFile("/proc/self/fd/" + std::to_string(m_file)); }

 private:
  int m_file;
};

}  // namespace

EndedProgram runForked(const std::vector<std::string>& arguments, const std::string& folder,
                       const std::function<void(const std::function<void()>&)>& surroundings) {
  const Printed out;
  const Printed err;
  std::vector<std::string> words = {"velmor-render"};
  words.insert(words.end(), arguments.begin(), arguments.end());
  std::vector<char*> argv;
  for (std::string& word : words) argv.push_back(word.data());
  argv.push_back(nullptr);
  std::fflush(nullptr);  // the child is not to print again what waits here
  const pid_t child = test_kit::forkInto([&] {
    ::alarm(kLongestRun);
    ::dup2(::open("/dev/null", O_RDONLY | O_CLOEXEC), STDIN_FILENO);
    out.takeOver(STDOUT_FILENO);
    err.takeOver(STDERR_FILENO);
    if (::chdir(folder.c_str()) != 0 || ::setenv("HOME", folder.c_str(), 1) != 0) return 127;
    int status = 127;
    surroundings([&] {
      status = velmorRenderMain(static_cast<int>(words.size()), argv.data());
      std::fflush(nullptr);
    });
    return status;
  });
  EndedProgram ended;
  ended.status = test_kit::waitFor(child);
  ended.out = out.text();
  ended.err = err.text();
  return ended;
}

}  // namespace render_test
