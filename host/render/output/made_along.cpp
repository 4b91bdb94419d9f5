#include "host/render/output/made_along.h"

#include "disc/failure.h"
#include "disc/terminal/interrupt.h"
#include "disc/text/phrases.h"
#include "host/render/terminal/messages.h"

namespace velmor::render {

void makeAlong(MadeAlong& made, const std::function<void()>& make) {
  try {
    make();
  } catch (const Interrupted&) {
    made.failure = "interrupted";
    made.interrupted = true;
  } catch (const Failure& error) {
    made.failure = error.what();
  }
}

int statusOf(const MadeAlong& made) {
  if (made.failure.empty()) return 0;
  printMessage("the sheet and the image are complete, but " + disc::inQuotes(made.path) +
               " was not written: " + made.failure);
  return made.interrupted ? interruptedStatus() : 1;
}

}  // namespace velmor::render
