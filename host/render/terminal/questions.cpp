#include "host/render/terminal/questions.h"

#include <unistd.h>

#include <cstdio>

namespace velmor::render {

bool canAskQuestions() {
  return isatty(STDIN_FILENO) != 0;
}

std::optional<std::string> ask(const std::string& question) {
  fprintf(stderr, "%s ", question.c_str());
  fflush(stderr);
  std::string answer;
  char letter = 0;
  for (;;) {
    const ssize_t got = read(STDIN_FILENO, &letter, 1);
    if (got == 1 && letter == '\n') {
      // A terminal shows the line end that was typed; from a pipe there is none to be seen.
      if (!canAskQuestions()) fputc('\n', stderr);
      return answer;
    }
    if (got != 1) {
      fputc('\n', stderr);
      return std::nullopt;
    }
    answer += letter;
  }
}

bool askYesOrNo(const std::string& question) {
  const auto answer = ask(question + " [y/N]");
  return answer && !answer->empty() && ((*answer)[0] == 'y' || (*answer)[0] == 'Y');
}

}  // namespace velmor::render
