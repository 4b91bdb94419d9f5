#include <cstdarg>
#include <cstdint>
#include <cstdio>
#include <cstring>

#include "tools/mac/loader/frameworks.h"
#include "tools/mac/loader/processor.h"
#include "tools/mac/loader/system_library.h"

namespace loader {

const macho::Processor kThisProcessor = macho::Processor::kArm64;

namespace {

// macOS passes every variable argument on the stack, in eight bytes each, where Linux goes on
// filling registers. So these functions name as many parameters as there are registers: what comes
// after them is taken from the stack.
using Register = int64_t;
using VectorRegister = double;

int openOnStack(const char* path, int flags, Register, Register, Register, Register, Register,
                Register, Register mode) {
  return openFile(path, flags, static_cast<int>(mode));
}

int controlOnStack(int fd, int command, Register, Register, Register, Register, Register, Register,
                   Register argument) {
  return controlFile(fd, command, static_cast<int>(argument));
}

void logOnStack(const void* format, Register, Register, Register, Register, Register, Register,
                Register, const char* line) {
  logLine(format, line);
}

int printOnStack(char* text, size_t size, const char* format, Register, Register, Register,
                 Register, Register, VectorRegister, VectorRegister, VectorRegister, VectorRegister,
                 VectorRegister, VectorRegister, VectorRegister, VectorRegister last, ...) {
  va_list arguments;
  va_start(arguments, last);
  const int length = vsnprintf(text, size, format, arguments);
  va_end(arguments);
  return length;
}

// A list of arguments is a plain pointer into the stack on macOS. Linux's has offsets too, into
/// registers that were saved: at 0 they are used up.
int printList(char* text, size_t size, const char* format, void* stack) {
  struct {
    void* stack;
    void* general_registers;
    void* vector_registers;
    int general_offset;
    int vector_offset;
  } const list = {stack, nullptr, nullptr, 0, 0};
  va_list arguments;
  static_assert(sizeof arguments == sizeof list);
  memcpy(&arguments, &list, sizeof list);
  return vsnprintf(text, size, format, arguments);
}

}  // namespace

void* variadicSymbol(const std::string& symbol) {
  if (symbol == "_open") return reinterpret_cast<void*>(&openOnStack);
  if (symbol == "_fcntl") return reinterpret_cast<void*>(&controlOnStack);
  if (symbol == "_NSLog") return reinterpret_cast<void*>(&logOnStack);
  if (symbol == "_snprintf") return reinterpret_cast<void*>(&printOnStack);
  if (symbol == "_vsnprintf") return reinterpret_cast<void*>(&printList);
  return nullptr;
}

// A message to nil answers 0.
__asm__(
    ".text\n"
    ".hidden loaderSendMessage\n"
    ".globl loaderSendMessage\n"
    ".type loaderSendMessage, @function\n"
    "loaderSendMessage:\n"
    "  cbz x0, 1f\n"
    "  stp x29, x30, [sp, #-80]!\n"
    "  mov x29, sp\n"
    "  stp x0, x1, [sp, #16]\n"
    "  stp x2, x3, [sp, #32]\n"
    "  stp x4, x5, [sp, #48]\n"
    "  stp x6, x7, [sp, #64]\n"
    "  bl loaderFindMethod\n"
    "  mov x16, x0\n"
    "  ldp x0, x1, [sp, #16]\n"
    "  ldp x2, x3, [sp, #32]\n"
    "  ldp x4, x5, [sp, #48]\n"
    "  ldp x6, x7, [sp, #64]\n"
    "  ldp x29, x30, [sp], #80\n"
    "  br x16\n"
    "1:\n"
    "  mov x0, #0\n"
    "  ret\n"
    ".size loaderSendMessage, . - loaderSendMessage\n");

}  // namespace loader
