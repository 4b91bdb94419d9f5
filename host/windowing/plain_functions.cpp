#include <chrono>
#include <thread>

#include "host/windowing/layer_functions.h"

namespace velmor::windowing::functions {

void Sleep(int milliseconds) {
  std::this_thread::sleep_for(std::chrono::milliseconds(milliseconds));
}

}  // namespace velmor::windowing::functions
