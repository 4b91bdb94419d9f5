#include "tools/mac/macho/mach_o_file.h"

#include <cstring>
#include <fstream>
#include <iterator>
#include <stdexcept>

#include "tools/mac/macho/opcodes.h"

namespace macho {

namespace {

constexpr uint32_t kMagic64 = 0xFEEDFACF;
constexpr uint32_t kMagicUniversal = 0xCAFEBABE;

// Load commands.
constexpr uint32_t kSymbolTable = 0x2;
constexpr uint32_t kLoadDylib = 0xC;
constexpr uint32_t kIdDylib = 0xD;
constexpr uint32_t kSegment64 = 0x19;
constexpr uint32_t kUuid = 0x1B;
constexpr uint32_t kMinimumMacOs = 0x24;
constexpr uint32_t kBuildVersion = 0x32;
constexpr uint32_t kLoadWeakDylib = 0x80000018;
constexpr uint32_t kDyldInfoOnly = 0x80000022;
constexpr uint32_t kFileHeaderBytes = 32;

std::string fixedText(const char* text, size_t capacity) {
  return {text, strnlen(text, capacity)};
}

std::string readWhole(const std::string& path) {
  std::ifstream in(path, std::ios::binary);
  if (!in) throw std::runtime_error(path + ": cannot be read");
  return {std::istreambuf_iterator<char>(in), {}};
}

/// The numbers of a universal file's header are big-endian, whatever its slices are.
uint32_t bigEndian(const std::string& bytes, size_t offset) {
  if (offset + 4 > bytes.size()) throw std::runtime_error("the list of slices breaks off");
  uint32_t value = 0;
  for (size_t i = 0; i < 4; ++i) value = value << 8 | static_cast<uint8_t>(bytes[offset + i]);
  return value;
}

struct Slice {
  Processor processor;
  size_t offset, size;
};

std::vector<Slice> slicesOf(const std::string& bytes) {
  constexpr size_t kHeaderBytes = 8;
  constexpr size_t kSliceBytes = 20;
  if (bytes.size() < kHeaderBytes) throw std::runtime_error("not a Mach-O file: it is too short");
  if (bigEndian(bytes, 0) != kMagicUniversal) {
    uint32_t processor;
    memcpy(&processor, bytes.data() + 4, sizeof processor);
    return {{Processor{processor}, 0, bytes.size()}};
  }
  std::vector<Slice> slices;
  for (size_t i = 0; i < bigEndian(bytes, 4); ++i) {
    const size_t at = kHeaderBytes + kSliceBytes * i;
    const size_t offset = bigEndian(bytes, at + 8);
    const size_t size = bigEndian(bytes, at + 12);
    if (offset > bytes.size() || size > bytes.size() - offset) {
      throw std::runtime_error("slice " + std::to_string(i + 1) + " ends behind the file");
    }
    slices.push_back({Processor{bigEndian(bytes, at)}, offset, size});
  }
  return slices;
}

std::string bytesFor(const std::string& bytes, Processor processor) {
  for (const Slice& slice : slicesOf(bytes)) {
    if (slice.processor == processor) return bytes.substr(slice.offset, slice.size);
  }
  throw std::runtime_error("no slice of a Mach-O file for this processor");
}

}  // namespace

/// Walks the load commands once.
class Reader {
 public:
  explicit Reader(MachOFile& file) : m_file(file) {}

  void read() {
    if (half(0) != kMagic64) throw std::runtime_error("not a Mach-O file of 64 bits");
    m_file.file_type = half(12);
    const uint32_t commands = half(16);
    uint64_t at = kFileHeaderBytes;
    for (uint32_t i = 0; i < commands; ++i) {
      readCommand(half(at), at);
      at += half(at + 4);
    }
    readDyldInfo();
  }

 private:
  const char* raw(uint64_t offset, uint64_t count) const {
    if (offset > m_file.m_bytes.size() || count > m_file.m_bytes.size() - offset) {
      throw std::runtime_error("the file ends at byte " + std::to_string(m_file.m_bytes.size()) +
                               ", where more is announced");
    }
    return m_file.m_bytes.data() + offset;
  }
  uint32_t half(uint64_t offset) const {
    uint32_t value;
    memcpy(&value, raw(offset, sizeof value), sizeof value);
    return value;
  }
  uint64_t whole(uint64_t offset) const {
    uint64_t value;
    memcpy(&value, raw(offset, sizeof value), sizeof value);
    return value;
  }
  std::string textAt(uint64_t offset) const {
    return fixedText(raw(offset, 1), m_file.m_bytes.size() - offset);
  }

  void readCommand(uint32_t command, uint64_t at) {
    switch (command) {
      case kSegment64:
        return readSegment(at);
      case kIdDylib:
        m_file.install_name = textAt(at + half(at + 8));
        return;
      case kLoadWeakDylib:
        m_file.libraries_that_may_be_missing.push_back(textAt(at + half(at + 8)));
        [[fallthrough]];
      case kLoadDylib:
        m_file.libraries.push_back(textAt(at + half(at + 8)));
        return;
      case kUuid:
        memcpy(m_file.uuid.data(), raw(at + 8, m_file.uuid.size()), m_file.uuid.size());
        return;
      case kMinimumMacOs:
        m_file.minimum_system = half(at + 8);
        return;
      case kBuildVersion:
        m_file.minimum_system = half(at + 12);
        return;
      case kSymbolTable:
        return readSymbols(at);
      case kDyldInfoOnly:
        m_dyld_info = at;
        return;
      default:
        return;
    }
  }

  void readSegment(uint64_t at) {
    Segment segment;
    segment.name = fixedText(raw(at + 8, 16), 16);
    segment.address = whole(at + 24);
    segment.size = whole(at + 32);
    segment.file_offset = whole(at + 40);
    segment.file_size = whole(at + 48);
    const uint32_t count = half(at + 64);
    for (uint32_t i = 0; i < count; ++i) {
      const uint64_t section = at + 72 + uint64_t{80} * i;
      m_file.sections.push_back({segment.name, fixedText(raw(section, 16), 16), whole(section + 32),
                                 whole(section + 40)});
    }
    m_file.segments.push_back(segment);
  }

  void readSymbols(uint64_t at) {
    constexpr uint8_t kDebugging = 0xE0;
    constexpr uint8_t kTypeMask = 0x0E;
    constexpr uint8_t kInSection = 0x0E;
    const uint64_t table = half(at + 8);
    const uint32_t count = half(at + 12);
    const uint64_t texts = half(at + 16);
    for (uint32_t i = 0; i < count; ++i) {
      const uint64_t entry = table + uint64_t{16} * i;
      const auto type = static_cast<uint8_t>(*raw(entry + 4, 1));
      if ((type & kDebugging) != 0 || (type & kTypeMask) != kInSection) continue;
      m_file.symbols[whole(entry + 8)].push_back(textAt(texts + half(entry)));
    }
  }

  Opcodes stream(uint64_t field) const {
    const uint32_t size = half(m_dyld_info + field + 4);
    return {raw(half(m_dyld_info + field), size), size};
  }

  void readDyldInfo() {
    if (m_dyld_info == 0) throw std::runtime_error("the file has no loader information");
    if (half(m_dyld_info + 28) != 0) throw std::runtime_error("the file binds weak symbols");
    m_file.rebases = readRebases(stream(8), m_file.segments);
    m_file.bindings = readBindings(stream(16), m_file, false);
    for (Binding& binding : readBindings(stream(32), m_file, true)) {
      m_file.bindings.push_back(std::move(binding));
    }
    m_file.exports = readExports(stream(40));
  }

  MachOFile& m_file;
  uint64_t m_dyld_info = 0;  ///< offset of the load command
};

std::vector<Processor> processorsOf(const std::string& path) {
  const std::string bytes = readWhole(path);
  std::vector<Processor> processors;
  for (const Slice& slice : slicesOf(bytes)) processors.push_back(slice.processor);
  return processors;
}

MachOFile::MachOFile(const std::string& path, Processor wanted) : processor(wanted) {
  const std::string bytes = readWhole(path);
  try {
    m_bytes = bytesFor(bytes, wanted);
    Reader(*this).read();
  } catch (const std::runtime_error& error) {
    throw std::runtime_error(path + ": " + error.what());
  }
}

const char* MachOFile::at(uint64_t address, size_t count) const {
  for (const Segment& segment : segments) {
    if (address < segment.address || address - segment.address >= segment.file_size) continue;
    const uint64_t inside = address - segment.address;
    if (count > segment.file_size - inside) break;
    return m_bytes.data() + segment.file_offset + inside;
  }
  throw std::runtime_error("no bytes of the file lie at address " + std::to_string(address));
}

uint64_t MachOFile::word(uint64_t address) const {
  uint64_t value;
  memcpy(&value, at(address, sizeof value), sizeof value);
  return value;
}

uint32_t MachOFile::halfWord(uint64_t address) const {
  uint32_t value;
  memcpy(&value, at(address, sizeof value), sizeof value);
  return value;
}

std::string MachOFile::text(uint64_t address) const {
  std::string text;
  for (char c; (c = *at(address, 1)) != '\0'; ++address) text.push_back(c);
  return text;
}

const Section* MachOFile::findSection(const std::string& name) const {
  for (const Section& section : sections) {
    if (section.name == name) return &section;
  }
  return nullptr;
}

}  // namespace macho
