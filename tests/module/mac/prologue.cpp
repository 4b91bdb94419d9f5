#include "tests/module/mac/prologue.h"

#include <cstdint>
#include <cstring>
#include <optional>
#include <stdexcept>
#include <string_view>

namespace mac {

namespace {

using macho::FrameLayout;

// ---- x86-64: pushes.

/// The register that the bytes push, by its number in unwind tables, and how many bytes say so.
struct Push {
  unsigned pushed;
  size_t bytes;
};

std::optional<Push> readPush(std::string_view code) {
  // By the processor's numbers: rax, rcx, rdx, rbx, rsp, rbp, rsi, rdi.
  constexpr unsigned kNumberOf[] = {0, 2, 1, 3, 7, 6, 4, 5};
  const bool extended = !code.empty() && code[0] == '\x41';
  const size_t at = extended ? 1 : 0;
  if (code.size() <= at || (code[at] & '\xF8') != '\x50') return std::nullopt;
  const auto number = static_cast<unsigned>(code[at] & 7);
  return Push{extended ? 8 + number : kNumberOf[number], at + 1};
}

/// The frame begins where the base pointer is saved and set, in some functions behind a first test
/// that returns at once.
FrameLayout x86Frame(std::string_view code) {
  constexpr unsigned kBasePointer = 6;
  constexpr unsigned kReturnAddress = 16;
  constexpr unsigned kRax = 0;  // pushed for the alignment alone
  const std::string_view set_up = "\x55\x48\x89\xE5";
  const size_t at = code.find(set_up);
  if (at == std::string_view::npos) throw std::runtime_error("no frame is set up");
  FrameLayout frame{kBasePointer, 16, {{kBasePointer, 16}, {kReturnAddress, 8}}};
  code.remove_prefix(at + set_up.size());
  uint64_t below = 16;
  while (const std::optional<Push> push = readPush(code)) {
    below += 8;
    if (push->pushed != kRax) frame.saved[push->pushed] = below;
    code.remove_prefix(push->bytes);
  }
  return frame;
}

// ---- arm64: pairs of registers that are stored below the stack pointer.

constexpr unsigned kStackPointer = 31;
constexpr unsigned kFramePointer = 29;
constexpr unsigned kFirstVector = 64;

class ArmPrologue {
 public:
  FrameLayout read(const char* code, size_t size) {
    // A frame may be set up behind a first test; a branch back or a return ends the look.
    for (size_t at = 0; at + 4 <= size; at += 4) {
      uint32_t instruction;
      memcpy(&instruction, code + at, sizeof instruction);
      if (setsFramePointer(instruction)) return withFramePointer();
      step(instruction);
    }
    if (!m_saved.empty()) return {kStackPointer, m_depth, m_saved};
    return {kStackPointer, 0, {}};
  }

 private:
  bool setsFramePointer(uint32_t instruction) {
    // add x29, sp, #immediate
    if ((instruction & 0xFFC003FF) != 0x910003FD) return false;
    m_frame_pointer = m_depth - (instruction >> 10 & 0xFFF);
    return true;
  }

  FrameLayout withFramePointer() const {
    if (m_frame_pointer != 16) throw std::runtime_error("the frame pointer points elsewhere");
    return {kFramePointer, 16, m_saved};
  }

  void step(uint32_t instruction) {
    if ((instruction & 0xFFC003FF) == 0xD10003FF) {  // sub sp, sp, #immediate
      m_depth += instruction >> 10 & 0xFFF;
    } else if ((instruction & 0xFFC003E0) == 0xA98003E0) {  // stp x, x, [sp, #-n]!
      m_depth -= static_cast<uint64_t>(pairOffset(instruction));
      store(instruction, 0, 0);
    } else if ((instruction & 0xFFC003E0) == 0x6D8003E0) {  // stp d, d, [sp, #-n]!
      m_depth -= static_cast<uint64_t>(pairOffset(instruction));
      store(instruction, 0, kFirstVector);
    } else if ((instruction & 0xFFC003E0) == 0xA90003E0) {  // stp x, x, [sp, #n]
      store(instruction, pairOffset(instruction), 0);
    } else if ((instruction & 0xFFC003E0) == 0x6D0003E0) {  // stp d, d, [sp, #n]
      store(instruction, pairOffset(instruction), kFirstVector);
    }
  }

  /// Seven bits with a sign, in steps of eight bytes.
  static int64_t pairOffset(uint32_t instruction) {
    const auto steps = static_cast<int64_t>(instruction >> 15 & 0x7F);
    return 8 * (steps < 64 ? steps : steps - 128);
  }

  void store(uint32_t instruction, int64_t offset, unsigned first_number) {
    const uint64_t below = m_depth - static_cast<uint64_t>(offset);
    keep(first_number + (instruction & 31), below);
    keep(first_number + (instruction >> 10 & 31), below - 8);
  }
  /// What a called function must give back; other registers are stored as data.
  void keep(unsigned number, uint64_t below) {
    const bool is_kept = (number >= 19 && number <= 30) ||
                         (number >= kFirstVector + 8 && number <= kFirstVector + 15);
    if (is_kept) m_saved.try_emplace(number, below);
  }

  uint64_t m_depth = 0;  ///< of the stack pointer below the caller's
  uint64_t m_frame_pointer = 0;
  std::map<unsigned, uint64_t> m_saved;
};

}  // namespace

FrameLayout frameThatPrologueBuilds(macho::Processor processor, const char* code, size_t size) {
  if (processor == macho::Processor::kX86) return x86Frame({code, size});
  return ArmPrologue().read(code, size);
}

}  // namespace mac
