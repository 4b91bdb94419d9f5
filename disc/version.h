// The version that all programs print.
#pragma once

namespace velmor::disc {

/// The project's version, "1.0.0"; CMakeLists.txt is its one place.
inline constexpr const char* kVersion = VELMOR_VERSION;

}  // namespace velmor::disc
