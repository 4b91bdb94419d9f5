// A Mach-O dylib in the memory of a Linux process: the slice for the process's processor. Both
// systems follow the same calling convention but for variable arguments, so its code runs as it is.
#pragma once

#include <functional>
#include <memory>
#include <string>

#include "tools/mac/loader/unwind_tables.h"
#include "tools/mac/macho/mach_o_file.h"

namespace loader {

/// The address of a symbol another library would give; `symbol` has its leading underscore. Null:
/// there is none, which ends the loading unless the dylib says that the symbol may be missing.
using Resolver = std::function<void*(const std::string& library, const std::string& symbol)>;

class DylibImage {
 public:
  /// Maps the file, moves its pointers and binds all symbols at once, the lazy ones too. Throws
  /// `std::runtime_error` when a symbol is missing or memory runs out. Runs nothing.
  DylibImage(const std::string& path, const Resolver& resolve);
  ~DylibImage();
  DylibImage(const DylibImage&) = delete;
  DylibImage& operator=(const DylibImage&) = delete;

  void runInitialisers() const;
  /// Null when the file exports no such symbol.
  void* findExport(const std::string& name) const;
  /// The same for every function of the file, exported or not.
  void* findFunction(const std::string& name) const;

 private:
  void map();
  void rebase();
  void bind(const Resolver& resolve);
  void protect();
  char* at(uint64_t address) const { return m_base + address; }

  macho::MachOFile m_file;
  char* m_base = nullptr;  ///< where address 0 of the file is
  size_t m_size = 0;
  std::unique_ptr<UnwindTables> m_unwind_tables;
};

}  // namespace loader
