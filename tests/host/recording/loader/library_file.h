// The library that the tests load.
#pragma once

namespace velmor::recording::testing {

inline constexpr const char* kLibrary = VELMOR_BINARY_DIR "/velmor_recording.so";

}  // namespace velmor::recording::testing
