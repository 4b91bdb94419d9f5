#include "tools/mac/loader/unwind_tables.h"

#include <cstdint>
#include <cstring>

#include "tools/mac/macho/unwind_info.h"

// Of the compiler's runtime: takes frame entries, in the form of an .eh_frame section with its end.
extern "C" void __register_frame(void* frames);    // NOLINT: the runtime's name
extern "C" void __deregister_frame(void* frames);  // NOLINT: the runtime's name

namespace loader {

namespace {

constexpr uint8_t kWordBytes = 8;

// Instructions of a frame entry.
constexpr uint8_t kDefineBase = 0x0C;
constexpr uint8_t kSavedRegister = 0x05;

/// Frame entries as they are written one after the other.
class FrameWriter {
 public:
  explicit FrameWriter(std::vector<char>& out) : m_out(out) {}

  void putByte(uint8_t value) { m_out.push_back(static_cast<char>(value)); }
  void putHalf(uint32_t value) { put(value); }
  void putPointer(const void* value) { put(value); }
  void putNumber(uint64_t value) {
    for (; value >= 0x80; value >>= 7) putByte(static_cast<uint8_t>(value | 0x80));
    putByte(static_cast<uint8_t>(value));
  }
  void putText(const char* text) { m_out.insert(m_out.end(), text, text + strlen(text) + 1); }

  /// Begins an entry, whose length comes first; returns its place for `end`.
  size_t begin() {
    putHalf(0);
    return m_out.size();
  }
  void end(size_t entry) {
    constexpr uint8_t kNoInstruction = 0;
    while ((m_out.size() - entry) % kWordBytes != kWordBytes - sizeof(uint32_t)) {
      putByte(kNoInstruction);
    }
    const auto length = static_cast<uint32_t>(m_out.size() - entry);
    memcpy(m_out.data() + entry - sizeof length, &length, sizeof length);
  }
  /// Bytes from `place` to here.
  uint32_t distanceFrom(size_t place) const { return static_cast<uint32_t>(m_out.size() - place); }

 private:
  template <class Value>
  void put(Value value) {
    const size_t at = m_out.size();
    m_out.resize(at + sizeof value);
    memcpy(m_out.data() + at, &value, sizeof value);
  }

  std::vector<char>& m_out;
};

unsigned returnAddress(macho::Processor processor) {
  return processor == macho::Processor::kX86 ? 16 : 30;
}

/// What the entries of functions with one personality routine have in common; the routine is null
/// for functions that have nothing to clean up. Returns its place.
size_t putCommonEntry(FrameWriter& writer, macho::Processor processor, const void* personality) {
  constexpr uint8_t kPlainPointer = 0;
  constexpr uint8_t kMinusEight = 0x78;
  const size_t entry = writer.begin();
  writer.putHalf(0);
  writer.putByte(1);
  writer.putText(personality ? "zPLR" : "zR");
  writer.putNumber(1);
  writer.putByte(kMinusEight);  // places of saved registers are counted in such steps
  writer.putByte(static_cast<uint8_t>(returnAddress(processor)));
  if (personality) {
    writer.putNumber(2 + sizeof personality + 1);
    writer.putByte(kPlainPointer);
    writer.putPointer(personality);
    writer.putByte(kPlainPointer);
  } else {
    writer.putNumber(1);
  }
  writer.putByte(kPlainPointer);
  writer.end(entry);
  return entry - sizeof(uint32_t);
}

void putLayout(FrameWriter& writer, const macho::FrameLayout& layout) {
  writer.putByte(kDefineBase);
  writer.putNumber(layout.base_register);
  writer.putNumber(layout.base_offset);
  for (const auto& [saved, below] : layout.saved) {
    writer.putByte(kSavedRegister);
    writer.putNumber(saved);
    writer.putNumber(below / kWordBytes);
  }
}

}  // namespace

UnwindTables::UnwindTables(const macho::MachOFile& file, char* base) {
  FrameWriter writer(m_frames);
  const std::vector<macho::UnwindEntry> entries = macho::readUnwindInfo(file);
  for (size_t i = 0; i + 1 < entries.size(); ++i) {
    const macho::UnwindEntry& entry = entries[i];
    if (entry.encoding == 0) continue;
    const void* personality = nullptr;
    if (entry.personality != 0) {
      memcpy(&personality, base + entry.personality, sizeof personality);
    }
    const size_t common = putCommonEntry(writer, file.processor, personality);
    const size_t place = writer.begin();
    writer.putHalf(writer.distanceFrom(common));
    writer.putPointer(base + entry.start);
    writer.putPointer(reinterpret_cast<void*>(entries[i + 1].start - entry.start));
    if (personality) {
      writer.putNumber(sizeof(void*));
      writer.putPointer(entry.lsda != 0 ? base + entry.lsda : nullptr);
    } else {
      writer.putNumber(0);
    }
    putLayout(writer, frameLayout(file.processor, entry.encoding));
    writer.end(place);
  }
  writer.putHalf(0);
  __register_frame(m_frames.data());
}

UnwindTables::~UnwindTables() {
  __deregister_frame(m_frames.data());
}

}  // namespace loader
