#include "tests/module/mac/objective_c_classes.h"

#include <stdexcept>

namespace mac {

namespace {

using macho::MachOFile;

using Methods = std::vector<std::pair<std::string, std::string>>;

// Offsets in the runtime's records: a class, its constant part, and the lists that hangs on.
constexpr uint64_t kSuperclass = 8;
constexpr uint64_t kConstantPart = 32;
constexpr uint64_t kInstanceSize = 8;
constexpr uint64_t kName = 24;
constexpr uint64_t kMethods = 32;
constexpr uint64_t kProtocols = 40;
constexpr uint64_t kVariables = 48;

Methods readMethods(const MachOFile& file, uint64_t list) {
  Methods methods;
  if (list == 0) return methods;
  const uint32_t entry_size = file.halfWord(list);
  for (uint32_t i = 0; i < file.halfWord(list + 4); ++i) {
    const uint64_t entry = list + 8 + uint64_t{entry_size} * i;
    methods.emplace_back(file.text(file.word(entry)), file.text(file.word(entry + 8)));
  }
  return methods;
}

std::vector<InstanceVariable> readVariables(const MachOFile& file, uint64_t list) {
  std::vector<InstanceVariable> variables;
  if (list == 0) return variables;
  const uint32_t entry_size = file.halfWord(list);
  for (uint32_t i = 0; i < file.halfWord(list + 4); ++i) {
    const uint64_t entry = list + 8 + uint64_t{entry_size} * i;
    variables.push_back({file.text(file.word(entry + 8)), file.text(file.word(entry + 16)),
                         file.halfWord(file.word(entry)), file.halfWord(entry + 28)});
  }
  return variables;
}

std::vector<std::string> readProtocols(const MachOFile& file, uint64_t list) {
  std::vector<std::string> names;
  if (list == 0) return names;
  for (uint64_t i = 0; i < file.word(list); ++i) {
    const uint64_t protocol = file.word(list + 8 + 8 * i);
    names.push_back(file.text(file.word(protocol + 8)));
  }
  return names;
}

std::string symbolBoundAt(const MachOFile& file, uint64_t address) {
  for (const macho::Binding& binding : file.bindings) {
    if (binding.address == address) return binding.symbol;
  }
  throw std::runtime_error("nothing is bound at address " + std::to_string(address));
}

}  // namespace

std::vector<ObjectiveCClass> readClasses(const MachOFile& file) {
  std::vector<ObjectiveCClass> classes;
  const macho::Section* list = file.findSection("__objc_classlist");
  if (!list) return classes;
  for (uint64_t at = list->address; at < list->address + list->size; at += 8) {
    const uint64_t address = file.word(at);
    const uint64_t constant_part = file.word(address + kConstantPart);
    const uint64_t meta_constant_part = file.word(file.word(address) + kConstantPart);
    ObjectiveCClass read;
    read.name = file.text(file.word(constant_part + kName));
    read.superclass = symbolBoundAt(file, address + kSuperclass);
    read.instance_size = file.halfWord(constant_part + kInstanceSize);
    read.methods = readMethods(file, file.word(constant_part + kMethods));
    read.class_methods = readMethods(file, file.word(meta_constant_part + kMethods));
    read.variables = readVariables(file, file.word(constant_part + kVariables));
    read.protocols = readProtocols(file, file.word(constant_part + kProtocols));
    classes.push_back(std::move(read));
  }
  return classes;
}

}  // namespace mac
