#include "tools/mac/macho/unwind_info.h"

#include <iterator>
#include <stdexcept>
#include <string>

namespace macho {

namespace {

constexpr uint32_t kHasLsda = 0x40000000;
constexpr unsigned kPersonalityShift = 28;
constexpr uint32_t kPersonalityMask = 0x3;
constexpr uint32_t kModeMask = 0x0F000000;

// x86-64. Registers by their numbers in unwind tables.
constexpr uint32_t kX86BasePointerFrame = 0x01000000;
constexpr unsigned kX86BasePointer = 6;
constexpr unsigned kX86ReturnAddress = 16;
/// What three bits of an encoding stand for: nothing, rbx, r12 to r15.
constexpr unsigned kX86Saved[] = {0, 3, 12, 13, 14, 15};

// arm64.
constexpr uint32_t kArmFrameless = 0x02000000;
constexpr uint32_t kArmFrame = 0x04000000;
constexpr unsigned kArmFramePointer = 29;
constexpr unsigned kArmReturnAddress = 30;
constexpr unsigned kArmStackPointer = 31;
/// The first of the two registers that each bit stands for: x19 to x27, d8 to d14.
constexpr unsigned kArmSavedPairs[] = {19, 21, 23, 25, 27, 72, 74, 76, 78};

[[noreturn]] void throwUnknown(uint32_t encoding) {
  throw std::runtime_error("no frame layout for the unwind encoding " + std::to_string(encoding));
}

FrameLayout x86Frame(uint32_t encoding) {
  if ((encoding & kModeMask) != kX86BasePointerFrame) throwUnknown(encoding);
  FrameLayout frame{kX86BasePointer, 16, {{kX86BasePointer, 16}, {kX86ReturnAddress, 8}}};
  // The registers lie side by side, the first of them the farthest below the base pointer.
  uint64_t below = 16 + 8 * uint64_t{encoding >> 16 & 0xFF};
  for (unsigned slot = 0; slot < 5; ++slot, below -= 8) {
    const uint32_t saved = encoding >> 3 * slot & 0x7;
    if (saved >= std::size(kX86Saved)) throwUnknown(encoding);
    if (saved != 0) frame.saved[kX86Saved[saved]] = below;
  }
  return frame;
}

void addArmPairs(FrameLayout& frame, uint32_t encoding, uint64_t below) {
  for (unsigned pair = 0; pair < std::size(kArmSavedPairs); ++pair) {
    // The bits of the general registers are 0 to 4, those of the vector registers 8 to 11.
    const unsigned bit = pair < 5 ? pair : pair + 3;
    if ((encoding >> bit & 1) == 0) continue;
    frame.saved[kArmSavedPairs[pair]] = below + 8;
    frame.saved[kArmSavedPairs[pair] + 1] = below + 16;
    below += 16;
  }
}

FrameLayout armFrame(uint32_t encoding) {
  FrameLayout frame;
  if ((encoding & kModeMask) == kArmFrame) {
    frame = {kArmFramePointer, 16, {{kArmFramePointer, 16}, {kArmReturnAddress, 8}}};
    addArmPairs(frame, encoding, 16);
  } else if ((encoding & kModeMask) == kArmFrameless) {
    frame = {kArmStackPointer, 16 * uint64_t{encoding >> 12 & 0xFFF}, {}};
    addArmPairs(frame, encoding, 0);
  } else {
    throwUnknown(encoding);
  }
  return frame;
}

/// The table's parts, by their offsets in its section.
class Table {
 public:
  Table(const MachOFile& file, const Section& section)
      : m_file(file), m_section(section), m_image(file.segments.at(0).address) {}

  std::vector<UnwindEntry> read() {
    if (half(0) != 1) throw std::runtime_error("an unwind table of an unknown version");
    const uint32_t index = half(20);
    const uint32_t pages = half(24);
    if (pages == 0) throw std::runtime_error("the unwind table has no end");
    for (uint32_t i = 0; i + 1 < pages; ++i) readPage(index + 12 * i);
    addEntry(half(index + 12 * (pages - 1)), 0);
    readLsdas(half(index + 8), half(index + 12 * (pages - 1) + 8));
    return m_entries;
  }

 private:
  uint32_t half(uint64_t offset) const { return m_file.halfWord(m_section.address + offset); }
  uint32_t quarter(uint64_t offset) const { return half(offset) & 0xFFFF; }

  void readPage(uint32_t index_entry) {
    constexpr uint32_t kRegular = 2;
    constexpr uint32_t kCompressed = 3;
    const uint32_t first_function = half(index_entry);
    const uint32_t page = half(index_entry + 4);
    const uint32_t entries = page + quarter(page + 4);
    const uint32_t count = quarter(page + 6);
    for (uint32_t i = 0; i < count; ++i) {
      if (half(page) == kRegular) {
        addEntry(half(entries + 8 * i), half(entries + 8 * i + 4));
      } else if (half(page) == kCompressed) {
        const uint32_t entry = half(entries + 4 * i);
        addEntry(first_function + (entry & 0xFFFFFF), encodingAt(page, entry >> 24));
      } else {
        throw std::runtime_error("a page of the unwind table is of an unknown kind");
      }
    }
  }

  uint32_t encodingAt(uint32_t page, uint32_t number) const {
    const uint32_t common = half(8);
    if (number < common) return half(half(4) + 4 * number);
    return half(page + quarter(page + 8) + 4 * (number - common));
  }

  void addEntry(uint32_t function, uint32_t encoding) {
    UnwindEntry entry;
    entry.start = m_image + function;
    entry.encoding = encoding;
    const uint32_t number = encoding >> kPersonalityShift & kPersonalityMask;
    if (number != 0) entry.personality = m_image + half(half(12) + 4 * (number - 1));
    m_entries.push_back(entry);
  }

  void readLsdas(uint32_t from, uint32_t to) {
    std::map<uint64_t, uint64_t> lsdas;
    for (uint32_t at = from; at < to; at += 8) lsdas[m_image + half(at)] = m_image + half(at + 4);
    for (UnwindEntry& entry : m_entries) {
      if ((entry.encoding & kHasLsda) == 0) continue;
      if (!lsdas.contains(entry.start)) {
        throw std::runtime_error("a function's data for exceptions is announced and missing");
      }
      entry.lsda = lsdas[entry.start];
    }
  }

  const MachOFile& m_file;
  const Section& m_section;
  uint64_t m_image;  ///< the address that offsets of functions count from
  std::vector<UnwindEntry> m_entries;
};

}  // namespace

std::vector<UnwindEntry> readUnwindInfo(const MachOFile& file) {
  const Section* const section = file.findSection("__unwind_info");
  if (!section) throw std::runtime_error("the file has no unwind table");
  return Table(file, *section).read();
}

FrameLayout frameLayout(Processor processor, uint32_t encoding) {
  return processor == Processor::kX86 ? x86Frame(encoding) : armFrame(encoding);
}

}  // namespace macho
