#include "tools/mac/macho/mach_o_file.h"

#include <cstring>
#include <fstream>
#include <iterator>
#include <stdexcept>

#include "tools/mac/macho/opcodes.h"

namespace macho {

namespace {

constexpr uint32_t kMagic64 = 0xFEEDFACF;
constexpr uint32_t kCpuX86_64 = 0x01000007;

// Load commands.
constexpr uint32_t kSymbolTable = 0x2;
constexpr uint32_t kLoadDylib = 0xC;
constexpr uint32_t kIdDylib = 0xD;
constexpr uint32_t kSegment64 = 0x19;
constexpr uint32_t kCodeSignature = 0x1D;
constexpr uint32_t kMinimumMacOs = 0x24;
constexpr uint32_t kDyldInfoOnly = 0x80000022;
constexpr uint32_t kFileHeaderBytes = 32;

std::string fixedText(const char* text, size_t capacity) {
  return {text, strnlen(text, capacity)};
}

}  // namespace

/// Walks the load commands once.
class Reader {
 public:
  explicit Reader(MachOFile& file) : file_(file) {}

  void Read() {
    if (Half(0) != kMagic64 || Half(4) != kCpuX86_64) {
      throw std::runtime_error("not a Mach-O file for x86-64");
    }
    file_.file_type = Half(12);
    const uint32_t commands = Half(16);
    uint64_t at = kFileHeaderBytes;
    for (uint32_t i = 0; i < commands; ++i) {
      ReadCommand(Half(at), at);
      at += Half(at + 4);
    }
    ReadDyldInfo();
  }

 private:
  const char* Raw(uint64_t offset, uint64_t count) const {
    if (offset > file_.bytes_.size() || count > file_.bytes_.size() - offset) {
      throw std::runtime_error("the file ends at byte " + std::to_string(file_.bytes_.size()) +
                               ", where more is announced");
    }
    return file_.bytes_.data() + offset;
  }
  uint32_t Half(uint64_t offset) const {
    uint32_t value;
    memcpy(&value, Raw(offset, sizeof value), sizeof value);
    return value;
  }
  uint64_t Whole(uint64_t offset) const {
    uint64_t value;
    memcpy(&value, Raw(offset, sizeof value), sizeof value);
    return value;
  }
  std::string TextAt(uint64_t offset) const {
    return fixedText(Raw(offset, 1), file_.bytes_.size() - offset);
  }

  void ReadCommand(uint32_t command, uint64_t at) {
    switch (command) {
      case kSegment64:
        return ReadSegment(at);
      case kIdDylib:
        file_.install_name = TextAt(at + Half(at + 8));
        return;
      case kLoadDylib:
        file_.libraries.push_back(TextAt(at + Half(at + 8)));
        return;
      case kMinimumMacOs:
        file_.minimum_system = Half(at + 8);
        return;
      case kCodeSignature:
        file_.has_signature = Half(at + 12) > 0;
        return;
      case kSymbolTable:
        return ReadSymbols(at);
      case kDyldInfoOnly:
        dyld_info_ = at;
        return;
      default:
        return;
    }
  }

  void ReadSegment(uint64_t at) {
    Segment segment;
    segment.name = fixedText(Raw(at + 8, 16), 16);
    segment.address = Whole(at + 24);
    segment.size = Whole(at + 32);
    segment.file_offset = Whole(at + 40);
    segment.file_size = Whole(at + 48);
    const uint32_t count = Half(at + 64);
    for (uint32_t i = 0; i < count; ++i) {
      const uint64_t section = at + 72 + uint64_t{80} * i;
      file_.sections.push_back({segment.name, fixedText(Raw(section, 16), 16), Whole(section + 32),
                                Whole(section + 40)});
    }
    file_.segments.push_back(segment);
  }

  void ReadSymbols(uint64_t at) {
    constexpr uint8_t kDebugging = 0xE0;
    constexpr uint8_t kTypeMask = 0x0E;
    constexpr uint8_t kInSection = 0x0E;
    const uint64_t table = Half(at + 8);
    const uint32_t count = Half(at + 12);
    const uint64_t texts = Half(at + 16);
    for (uint32_t i = 0; i < count; ++i) {
      const uint64_t entry = table + uint64_t{16} * i;
      const auto type = static_cast<uint8_t>(*Raw(entry + 4, 1));
      if ((type & kDebugging) != 0 || (type & kTypeMask) != kInSection) continue;
      file_.symbols[Whole(entry + 8)].push_back(TextAt(texts + Half(entry)));
    }
  }

  Opcodes Stream(uint64_t field) const {
    const uint32_t size = Half(dyld_info_ + field + 4);
    return {Raw(Half(dyld_info_ + field), size), size};
  }

  void ReadDyldInfo() {
    if (dyld_info_ == 0) throw std::runtime_error("the file has no loader information");
    if (Half(dyld_info_ + 28) != 0) throw std::runtime_error("the file binds weak symbols");
    file_.rebases = ReadRebases(Stream(8), file_.segments);
    file_.bindings = ReadBindings(Stream(16), file_, false);
    for (Binding& binding : ReadBindings(Stream(32), file_, true)) {
      file_.bindings.push_back(std::move(binding));
    }
    file_.exports = ReadExports(Stream(40));
  }

  MachOFile& file_;
  uint64_t dyld_info_ = 0;  ///< offset of the load command
};

MachOFile::MachOFile(const std::string& path) {
  std::ifstream in(path, std::ios::binary);
  if (!in) throw std::runtime_error(path + ": cannot be read");
  bytes_.assign(std::istreambuf_iterator<char>(in), {});
  try {
    Reader(*this).Read();
  } catch (const std::runtime_error& error) {
    throw std::runtime_error(path + ": " + error.what());
  }
}

const char* MachOFile::At(uint64_t address, size_t count) const {
  for (const Segment& segment : segments) {
    if (address < segment.address || address - segment.address >= segment.file_size) continue;
    const uint64_t inside = address - segment.address;
    if (count > segment.file_size - inside) break;
    return bytes_.data() + segment.file_offset + inside;
  }
  throw std::runtime_error("no bytes of the file lie at address " + std::to_string(address));
}

uint64_t MachOFile::Word(uint64_t address) const {
  uint64_t value;
  memcpy(&value, At(address, sizeof value), sizeof value);
  return value;
}

uint32_t MachOFile::HalfWord(uint64_t address) const {
  uint32_t value;
  memcpy(&value, At(address, sizeof value), sizeof value);
  return value;
}

std::string MachOFile::Text(uint64_t address) const {
  std::string text;
  for (char c; (c = *At(address, 1)) != '\0'; ++address) text.push_back(c);
  return text;
}

const Section* MachOFile::FindSection(const std::string& segment, const std::string& name) const {
  for (const Section& section : sections) {
    if (section.segment == segment && section.name == name) return &section;
  }
  return nullptr;
}

}  // namespace macho
