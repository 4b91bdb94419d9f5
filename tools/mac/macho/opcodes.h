// The compressed tables of a Mach-O file: what moves, what is bound, what is exported.
#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <vector>

namespace macho {

class MachOFile;
struct Binding;
struct Segment;

/// One table's bytes, read in order; every read past its end throws `std::runtime_error`.
class Opcodes {
 public:
  Opcodes(const char* data, size_t size) : m_data(data), m_size(size) {}

  bool atEnd() const { return m_at >= m_size; }
  void goTo(size_t offset) { m_at = offset; }
  size_t offset() const { return m_at; }
  uint8_t readByte();
  /// A little-endian base-128 number.
  uint64_t readUnsigned();
  int64_t readSigned();
  std::string readText();

 private:
  const char* m_data;
  size_t m_size;
  size_t m_at = 0;
};

std::vector<uint64_t> readRebases(Opcodes stream, const std::vector<Segment>& segments);
/// `lazy`: the table of the stubs, where an end mark follows each entry.
std::vector<Binding> readBindings(Opcodes stream, const MachOFile& file, bool lazy);
std::map<std::string, uint64_t> readExports(Opcodes trie);

}  // namespace macho
