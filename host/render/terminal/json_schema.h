// The form of what --json prints.
#pragma once

namespace velmor::render {

/// The field "schema_version" of every JSON object that the program prints. It grows when a field
/// goes or changes its meaning, not when one is added.
inline constexpr int kJsonSchemaVersion = 1;

}  // namespace velmor::render
