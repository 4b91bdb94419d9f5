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
  Opcodes(const char* data, size_t size) : data_(data), size_(size) {}

  bool AtEnd() const { return at_ >= size_; }
  void GoTo(size_t offset) { at_ = offset; }
  size_t Offset() const { return at_; }
  uint8_t Byte();
  /// A little-endian base-128 number.
  uint64_t Unsigned();
  int64_t Signed();
  std::string Text();

 private:
  const char* data_;
  size_t size_;
  size_t at_ = 0;
};

std::vector<uint64_t> ReadRebases(Opcodes stream, const std::vector<Segment>& segments);
/// `lazy`: the table of the stubs, where an end mark follows each entry.
std::vector<Binding> ReadBindings(Opcodes stream, const MachOFile& file, bool lazy);
std::map<std::string, uint64_t> ReadExports(Opcodes trie);

}  // namespace macho
