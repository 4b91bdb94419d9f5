#include "programs/program_run.h"

#include <cerrno>
#include <iostream>
#include <string>
#include <system_error>

#include "disc/terminal/interrupt.h"
#include "disc/text/line_of_text.h"
#include "disc/text/phrases.h"

namespace velmor::programs {

namespace {

int runOrThrow(CLI::App& app, int argc, char** argv, const std::function<int()>& work) {
  try {
    app.parse(argc, argv);
  } catch (const CLI::ParseError& error) {
    if (error.get_exit_code() == 0) {
      app.exit(error);  // prints the help or the version
      flushReport();
      return 0;
    }
    throw Failure(disc::asClause(error.what()) + "; --help lists the options");
  }
  watchForInterrupts();
  return work();
}

}  // namespace

int runProgram(CLI::App& app, int argc, char** argv, const std::function<int()>& work) {
  try {
    return runOrThrow(app, argc, argv, work);
  } catch (const Interrupted& interruption) {
    printMessage(app.get_name(), "interrupted; nothing was written");
    return interruption.exitStatus();
  } catch (const std::exception& error) {
    printMessage(app.get_name(), error.what());
    return kNotDone;
  }
}

void printMessage(std::string_view program, std::string_view text) {
  std::cerr << program << ": " << disc::printable(text) << '\n';
}

void flushReport() {
  if (!std::cout.flush())
    throw Failure("the report cannot be written to standard output: " +
                  std::generic_category().message(errno) + "; give it another place");
}

}  // namespace velmor::programs
