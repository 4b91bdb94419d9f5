// What a Mach-O dylib says about itself, one slice of it for each processor.
#pragma once

#include <array>
#include <cstdint>
#include <map>
#include <string>
#include <vector>

namespace macho {

/// The system's numbers for them.
enum class Processor : uint32_t { kX86 = 0x01000007, kArm64 = 0x0100000C };

struct Segment {
  std::string name;
  uint64_t address = 0;
  uint64_t size = 0;  ///< bytes in memory; beyond `file_size` they are zero
  uint64_t file_offset = 0;
  uint64_t file_size = 0;
};

struct Section {
  std::string segment;
  std::string name;
  uint64_t address = 0;
  uint64_t size = 0;
};

/// A pointer that the loader fills with the address of another library's symbol.
struct Binding {
  uint64_t address = 0;
  std::string symbol;   ///< with the leading underscore
  std::string library;  ///< install name
  int64_t addend = 0;
  bool lazy = false;
  bool may_be_missing = false;  ///< then the pointer is null
};

/// The processors that a file has slices for, in their order. Throws `std::runtime_error` when it
/// cannot be read or is no Mach-O file.
std::vector<Processor> processorsOf(const std::string& path);

/// One slice of a dylib, read from its file. Addresses are those the slice was linked for.
class MachOFile {
 public:
  /// Throws `std::runtime_error` saying what is wrong when the file cannot be read, is none, or has
  /// no slice for the processor.
  MachOFile(const std::string& path, Processor processor);

  Processor processor;
  uint32_t file_type = 0;
  std::string install_name;
  uint32_t minimum_system = 0;                             ///< 0x000A0D00 is 10.13
  std::array<uint8_t, 16> uuid = {};                       ///< zeros: it has none
  std::vector<std::string> libraries;                      ///< install names, in load order
  std::vector<std::string> libraries_that_may_be_missing;  ///< those of them
  std::vector<Segment> segments;
  std::vector<Section> sections;
  std::vector<Binding> bindings;
  std::vector<uint64_t> rebases;  ///< addresses of pointers that move with the file
  std::map<std::string, uint64_t> exports;
  std::map<uint64_t, std::vector<std::string>> symbols;  ///< those defined in the file

  /// The slice's bytes.
  size_t size() const { return m_bytes.size(); }
  const char* data() const { return m_bytes.data(); }
  /// The bytes at an address; throws when fewer than `count` of them come from the file.
  const char* at(uint64_t address, size_t count) const;
  uint64_t word(uint64_t address) const;
  uint32_t halfWord(uint64_t address) const;
  std::string text(uint64_t address) const;
  /// The first section of that name, in whichever segment the processor's linker puts it; null when
  /// there is none.
  const Section* findSection(const std::string& name) const;

 private:
  friend class Reader;
  std::string m_bytes;
};

}  // namespace macho
