#include <algorithm>
#include <string>

#include "host/windowing/desktop.h"
#include "host/windowing/dialogs/person.h"
#include "host/windowing/layer_functions.h"
#include "host/windowing/win32_numbers.h"

namespace velmor::windowing {

std::vector<int> messageBoxButtons(int type) {
  switch (type & kMessageBoxKindMask) {
    case MB_OKCANCEL:
      return {IDOK, IDCANCEL};
    case MB_ABORTRETRYIGNORE:
      return {kIdabort, kIdretry, kIdignore};
    case MB_YESNOCANCEL:
      return {kIdyes, kIdno, IDCANCEL};
    case MB_YESNO:
      return {kIdyes, kIdno};
    case MB_RETRYCANCEL:
      return {kIdretry, IDCANCEL};
    default:
      return {IDOK};
  }
}

namespace {

/// The answer to a question that nobody has read.
int unreadAnswer(const std::vector<int>& buttons) {
  for (const int answer : {IDCANCEL, kIdno, kIdabort}) {
    if (std::ranges::find(buttons, answer) != buttons.end()) {
      return answer;
    }
  }
  return IDOK;
}

}  // namespace

int functions::MessageBox(HWND owner, const char* text, const char* caption, int type) {
  const std::vector<int> buttons = messageBoxButtons(type);
  Person* person = Desktop::the().person();
  if (person == nullptr) {
    return unreadAnswer(buttons);
  }
  ShownMessage message;
  message.owner = owner;
  message.text = text == nullptr ? "" : text;
  message.caption = caption == nullptr ? "Error" : caption;
  message.type = type;
  const int answer = person->readMessage(message);
  if (std::ranges::find(buttons, answer) == buttons.end()) {
    throw CannotDo("the message \"" + message.text + "\" has no button " + std::to_string(answer));
  }
  return answer;
}

}  // namespace velmor::windowing
