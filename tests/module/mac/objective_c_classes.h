// The Objective-C classes that a Mach-O file brings, as the runtime would register them.
#pragma once

#include <string>
#include <utility>
#include <vector>

#include "tools/mac/macho/mach_o_file.h"

namespace mac {

struct InstanceVariable {
  std::string name;
  std::string type;
  uint32_t offset = 0;
  uint32_t size = 0;
  bool operator==(const InstanceVariable&) const = default;
};

struct ObjectiveCClass {
  std::string name;
  std::string superclass;  ///< the symbol it is bound to
  uint32_t instance_size = 0;
  std::vector<std::pair<std::string, std::string>> methods;  ///< selector, type encoding
  std::vector<std::pair<std::string, std::string>> class_methods;
  std::vector<InstanceVariable> variables;
  std::vector<std::string> protocols;
};

/// In the order of the file's class list.
std::vector<ObjectiveCClass> readClasses(const macho::MachOFile& file);

}  // namespace mac
