#include "tools/mac/macho/opcodes.h"

#include <stdexcept>

#include "tools/mac/macho/mach_o_file.h"

namespace macho {

namespace {

constexpr unsigned kOpcodeMask = 0xF0;
constexpr unsigned kImmediateMask = 0x0F;
constexpr unsigned kMayBeMissing = 1;
constexpr uint64_t kPointer = 8;

[[noreturn]] void unknownOpcode(const char* table, unsigned opcode) {
  throw std::runtime_error(std::string("unknown opcode ") + std::to_string(opcode) + " in the " +
                           table + " table");
}

uint64_t segmentAddress(const std::vector<Segment>& segments, unsigned index) {
  if (index >= segments.size()) throw std::runtime_error("a table names a segment too many");
  return segments[index].address;
}

}  // namespace

uint8_t Opcodes::readByte() {
  if (m_at >= m_size) throw std::runtime_error("a loader table breaks off");
  return static_cast<uint8_t>(m_data[m_at++]);
}

uint64_t Opcodes::readUnsigned() {
  uint64_t value = 0;
  for (unsigned shift = 0;; shift += 7) {
    const uint8_t byte = readByte();
    if (shift < 64) value |= uint64_t{byte & 0x7FU} << shift;
    if ((byte & 0x80U) == 0) return value;
  }
}

int64_t Opcodes::readSigned() {
  uint64_t value = 0;
  for (unsigned shift = 0;;) {
    const uint8_t byte = readByte();
    if (shift < 64) value |= uint64_t{byte & 0x7FU} << shift;
    shift += 7;
    if ((byte & 0x80U) != 0) continue;
    if ((byte & 0x40U) != 0 && shift < 64) value |= ~uint64_t{0} << shift;
    return static_cast<int64_t>(value);
  }
}

std::string Opcodes::readText() {
  std::string text;
  for (uint8_t byte; (byte = readByte()) != 0;) text.push_back(static_cast<char>(byte));
  return text;
}

std::vector<uint64_t> readRebases(Opcodes stream, const std::vector<Segment>& segments) {
  std::vector<uint64_t> addresses;
  uint64_t address = 0;
  const auto rebase = [&](uint64_t times, uint64_t skip) {
    for (; times > 0; --times) {
      addresses.push_back(address);
      address += kPointer + skip;
    }
  };
  while (!stream.atEnd()) {
    const unsigned byte = stream.readByte();
    const unsigned immediate = byte & kImmediateMask;
    switch (byte & kOpcodeMask) {
      case 0x00:
        return addresses;
      case 0x10:
        break;  // the type: pointers, the only one that is left
      case 0x20:
        address = segmentAddress(segments, immediate) + stream.readUnsigned();
        break;
      case 0x30:
        address += stream.readUnsigned();
        break;
      case 0x40:
        address += immediate * kPointer;
        break;
      case 0x50:
        rebase(immediate, 0);
        break;
      case 0x60:
        rebase(stream.readUnsigned(), 0);
        break;
      case 0x70:
        rebase(1, stream.readUnsigned());
        break;
      case 0x80: {
        const uint64_t times = stream.readUnsigned();
        rebase(times, stream.readUnsigned());
        break;
      }
      default:
        unknownOpcode("rebase", byte);
    }
  }
  return addresses;
}

std::vector<Binding> readBindings(Opcodes stream, const MachOFile& file, bool lazy) {
  std::vector<Binding> bindings;
  Binding next;
  next.lazy = lazy;
  const auto set_library = [&](uint64_t ordinal) {
    if (ordinal == 0 || ordinal > file.libraries.size()) {
      throw std::runtime_error(next.symbol + " is bound to no library of the file");
    }
    next.library = file.libraries[ordinal - 1];
  };
  const auto bind = [&](uint64_t times, uint64_t skip) {
    for (; times > 0; --times) {
      bindings.push_back(next);
      next.address += kPointer + skip;
    }
  };
  while (!stream.atEnd()) {
    const unsigned byte = stream.readByte();
    const unsigned immediate = byte & kImmediateMask;
    switch (byte & kOpcodeMask) {
      case 0x00:
        if (!lazy) return bindings;
        break;
      case 0x10:
        set_library(immediate);
        break;
      case 0x20:
        set_library(stream.readUnsigned());
        break;
      case 0x40:
        next.may_be_missing = (immediate & kMayBeMissing) != 0;
        next.symbol = stream.readText();
        break;
      case 0x50:
        break;  // the type: pointers
      case 0x60:
        next.addend = stream.readSigned();
        break;
      case 0x70:
        next.address = segmentAddress(file.segments, immediate) + stream.readUnsigned();
        break;
      case 0x80:
        next.address += stream.readUnsigned();
        break;
      case 0x90:
        bind(1, 0);
        break;
      case 0xA0:
        bind(1, stream.readUnsigned());
        break;
      case 0xB0:
        bind(1, immediate * kPointer);
        break;
      case 0xC0: {
        const uint64_t times = stream.readUnsigned();
        bind(times, stream.readUnsigned());
        break;
      }
      default:  // 0x30, too: a special library (flat look-up), which the module must not use
        unknownOpcode("binding", byte);
    }
  }
  return bindings;
}

std::map<std::string, uint64_t> readExports(Opcodes trie) {
  std::map<std::string, uint64_t> exports;
  struct Node {
    size_t offset;
    std::string prefix;
  };
  std::vector<Node> pending = {{0, ""}};
  for (size_t visited = 0; !pending.empty(); ++visited) {
    if (visited > 10000) throw std::runtime_error("the export trie does not end");
    const Node node = pending.back();
    pending.pop_back();
    trie.goTo(node.offset);
    const uint64_t payload = trie.readUnsigned();
    const size_t children = trie.offset() + payload;
    if (payload > 0) {
      if (trie.readUnsigned() != 0) throw std::runtime_error(node.prefix + ": not a plain export");
      exports[node.prefix] = trie.readUnsigned();
    }
    trie.goTo(children);
    for (unsigned count = trie.readByte(); count > 0; --count) {
      std::string prefix = node.prefix + trie.readText();
      pending.push_back({static_cast<size_t>(trie.readUnsigned()), std::move(prefix)});
    }
  }
  return exports;
}

}  // namespace macho
