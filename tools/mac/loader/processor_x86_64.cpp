#include "tools/mac/loader/frameworks.h"
#include "tools/mac/loader/processor.h"
#include "tools/mac/loader/system_library.h"

namespace loader {

const macho::Processor kThisProcessor = macho::Processor::kX86;

// Both systems pass variable arguments like all others.
void* variadicSymbol(const std::string& symbol) {
  if (symbol == "_open") return reinterpret_cast<void*>(&openFile);
  if (symbol == "_fcntl") return reinterpret_cast<void*>(&controlFile);
  if (symbol == "_NSLog") return reinterpret_cast<void*>(&logLine);
  return nullptr;
}

// A message to nil answers 0.
__asm__(
    ".text\n"
    ".hidden loaderSendMessage\n"
    ".globl loaderSendMessage\n"
    ".type loaderSendMessage, @function\n"
    "loaderSendMessage:\n"
    "  test %rdi, %rdi\n"
    "  je 1f\n"
    "  push %rbp\n"
    "  mov %rsp, %rbp\n"
    "  push %rdi\n"
    "  push %rsi\n"
    "  push %rdx\n"
    "  push %rcx\n"
    "  push %r8\n"
    "  push %r9\n"
    "  call loaderFindMethod@PLT\n"
    "  pop %r9\n"
    "  pop %r8\n"
    "  pop %rcx\n"
    "  pop %rdx\n"
    "  pop %rsi\n"
    "  pop %rdi\n"
    "  pop %rbp\n"
    "  jmp *%rax\n"
    "1:\n"
    "  xor %eax, %eax\n"
    "  ret\n"
    ".size loaderSendMessage, . - loaderSendMessage\n");

}  // namespace loader
