#include <algorithm>
#include <string>

#include "disc/text/phrases.h"
#include "host/windowing/desktop/desktop.h"
#include "host/windowing/dialogs/dialog_user.h"
#include "host/windowing/functions/layer_functions.h"
#include "host/windowing/win32/win32_numbers.h"

namespace velmor::windowing {

namespace {

/// The answer of a message box while there is no user: the one that agrees to nothing.
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
  DialogUser* user = Desktop::the().user();
  if (user == nullptr) {
    return unreadAnswer(buttons);
  }
  ShownMessage message;
  message.owner = owner;
  message.text = text == nullptr ? "" : text;
  message.caption = caption == nullptr ? "Error" : caption;
  message.type = type;
  const int answer = user->readMessage(message);
  if (std::ranges::find(buttons, answer) == buttons.end()) {
    throw CannotDo("the message " + disc::inQuotes(message.text) + " has no button " +
                   std::to_string(answer));
  }
  return answer;
}

}  // namespace velmor::windowing
