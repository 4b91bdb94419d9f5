// Ctrl-C and its kin: noted when they come, acted on where the work can stop cleanly.
#pragma once

namespace velmor::render {

/// Notes SIGINT, SIGTERM and SIGHUP from now on instead of dying of them.
void watchForInterrupts();

/// Throws `Interrupted` when one of them has come. Any thread.
void stopIfInterrupted();

}  // namespace velmor::render
