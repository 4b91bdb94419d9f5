#include "tests/kit/faults/trapped_calls.h"

#include <linux/audit.h>
#include <linux/filter.h>
#include <linux/seccomp.h>
#include <sys/mman.h>
#include <sys/prctl.h>
#include <sys/syscall.h>
#include <ucontext.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <cstddef>
#include <cstdint>
#include <new>
#include <stdexcept>
#include <vector>

namespace test_kit {

namespace {

CallTrap* g_trap = nullptr;

/// Without those that end a process, wait, start a thread (which happens with all signals blocked)
/// or cannot fail.
constexpr std::array kTrapped = {
    SYS_open,       SYS_openat,    SYS_creat,      SYS_close,
    SYS_read,       SYS_readv,     SYS_pread64,    SYS_preadv,
    SYS_write,      SYS_writev,    SYS_pwrite64,   SYS_pwritev,
    SYS_lseek,      SYS_ftruncate, SYS_truncate,   SYS_fallocate,
    SYS_stat,       SYS_fstat,     SYS_lstat,      SYS_newfstatat,
    SYS_statx,      SYS_statfs,    SYS_fstatfs,    SYS_rename,
    SYS_renameat,   SYS_renameat2, SYS_link,       SYS_linkat,
    SYS_symlink,    SYS_symlinkat, SYS_unlink,     SYS_unlinkat,
    SYS_mkdir,      SYS_mkdirat,   SYS_rmdir,      SYS_fsync,
    SYS_fdatasync,  SYS_flock,     SYS_fcntl,      SYS_fadvise64,
    SYS_getdents64, SYS_readlink,  SYS_readlinkat, SYS_access,
    SYS_faccessat,  SYS_getcwd,    SYS_chmod,      SYS_fchmod,
    SYS_dup,        SYS_dup2,      SYS_dup3,       SYS_pipe2,
    SYS_ioctl,      SYS_sendfile,  SYS_prlimit64,  SYS_mmap,
    SYS_munmap,     SYS_mremap,    SYS_mprotect,   SYS_brk,
    SYS_socket,     SYS_connect,   SYS_sendto,     SYS_copy_file_range};

long callSystem(long number, const std::array<long, 6>& arguments) {
  long result = number;
  register long fourth __asm__("r10") = arguments[3];
  register long fifth __asm__("r8") = arguments[4];
  register long sixth __asm__("r9") = arguments[5];
  __asm__ volatile("syscall"
                   : "+a"(result)
                   : "D"(arguments[0]), "S"(arguments[1]), "d"(arguments[2]), "r"(fourth),
                     "r"(fifth), "r"(sixth)
                   : "rcx", "r11", "memory");
  return result;
}

bool concernsMemory(long number) {
  return number == SYS_mmap || number == SYS_mremap || number == SYS_mprotect;
}

bool isCarriedOutAllTheSame(long number) {
  return number == SYS_close || number == SYS_munmap;
}

long refuse(CallTrap& trap, long number, const std::array<long, 6>& arguments) {
  long none = -1;
  trap.failed.compare_exchange_strong(none, number);
  // A break that cannot be moved is answered with where it is.
  if (number == SYS_brk) return callSystem(SYS_brk, {});
  if (isCarriedOutAllTheSame(number)) callSystem(number, arguments);
  return -(concernsMemory(number) ? ENOMEM : trap.error);
}

/// Nothing is lost with a file that is thrown away, so nobody waits for its disk.
long carryOut(long number, const std::array<long, 6>& arguments) {
  return number == SYS_fsync ? 0 : callSystem(number, arguments);
}

void onCall(int /*signal*/, siginfo_t* call, void* context) {
  greg_t* const registers = static_cast<ucontext_t*>(context)->uc_mcontext.gregs;
  const long number = call->si_syscall;
  const std::array<long, 6> arguments = {registers[REG_RDI], registers[REG_RSI], registers[REG_RDX],
                                         registers[REG_R10], registers[REG_R8],  registers[REG_R9]};
  CallTrap& trap = *g_trap;
  const int nth = ++trap.calls;
  const bool fails =
      trap.nth > 0 && (trap.times == Times::kOnce ? nth == trap.nth : nth >= trap.nth);
  registers[REG_RAX] = fails ? refuse(trap, number, arguments) : carryOut(number, arguments);
}

sock_filter load(size_t offset) {
  return BPF_STMT(BPF_LD | BPF_W | BPF_ABS, static_cast<uint32_t>(offset));
}

sock_filter answer(uint32_t action) {
  return BPF_STMT(BPF_RET | BPF_K, action);
}

/// Skips the next statement unless the value is `wanted`.
sock_filter unlessEqualSkip(uint32_t wanted) {
  return BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, wanted, 0, 1);
}

/// The program's own file lies in another four gibibytes than the libraries, and within these its
/// calls are let through.
std::vector<sock_filter> filter() {
  const auto own = static_cast<uint32_t>(reinterpret_cast<uintptr_t>(&callSystem) >> 32);
  std::vector<sock_filter> program = {load(offsetof(seccomp_data, instruction_pointer) + 4),
                                      unlessEqualSkip(own), answer(SECCOMP_RET_ALLOW),
                                      load(offsetof(seccomp_data, nr))};
  for (const long number : kTrapped) {
    program.push_back(unlessEqualSkip(static_cast<uint32_t>(number)));
    program.push_back(answer(SECCOMP_RET_TRAP));
  }
  program.push_back(answer(SECCOMP_RET_ALLOW));
  return program;
}

}  // namespace

SharedCallTrap::SharedCallTrap() {
  void* const page =
      ::mmap(nullptr, sizeof(CallTrap), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0);
  if (page == MAP_FAILED) throw std::runtime_error("no shared memory");
  m_trap = new (page) CallTrap;
}

SharedCallTrap::~SharedCallTrap() {
  ::munmap(m_trap, sizeof(CallTrap));
}

void trapSystemCalls(CallTrap& trap) {
  g_trap = &trap;
  struct sigaction action {};
  action.sa_sigaction = onCall;
  action.sa_flags = SA_SIGINFO | SA_NODEFER;
  std::vector<sock_filter> statements = filter();
  const sock_fprog program{static_cast<unsigned short>(statements.size()), statements.data()};
  if (::sigaction(SIGSYS, &action, nullptr) != 0 || ::prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) != 0 ||
      ::prctl(PR_SET_SECCOMP, SECCOMP_MODE_FILTER, &program) != 0) {
    throw std::runtime_error("system calls cannot be trapped here");
  }
}

}  // namespace test_kit
