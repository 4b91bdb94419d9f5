// The options of a burn.
#pragma once

#include <string>

#include "host/render/options/usage_error.h"

namespace CLI {
class App;
}

namespace velmor::render {

struct BurnOptions {
  bool wanted = false;  ///< --burn
  std::string drive;    ///< number or name; empty: the one used last
  bool eject = false;
  bool delete_image = false;
  bool dry_run = false;
  bool verify = false;
  bool cd_text = false;
  double speed = 0.0;  ///< multiples of playing speed; 0: as fast as the drive offers
  int copies = 1;
};

/// The options of the group "Burn", --list-drives apart.
void addBurnOptions(CLI::App& app, BurnOptions& options);

/// Throws `UsageError` when there are options of a burn but no --burn, and when they contradict
/// each other.
void checkBurnOptions(const CLI::App& app, const BurnOptions& options);

}  // namespace velmor::render
