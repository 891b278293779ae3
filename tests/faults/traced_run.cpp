#include "tests/faults/traced_run.h"

#include <array>
#include <cerrno>
#include <csignal>
#include <map>
#include <optional>
#include <set>
#include <stdexcept>

#include <sys/ptrace.h>
#include <sys/syscall.h>
#include <sys/types.h>
#include <sys/user.h>
#include <sys/wait.h>
#include <unistd.h>

namespace vel::test {
namespace {

// Every system call that a traced process may make stands in one of two tables.

const std::map<long, const char*> kFileCalls = {
    {SYS_access, "access"},
    {SYS_chmod, "chmod"},
    {SYS_chown, "chown"},
    {SYS_close, "close"},
    {SYS_copy_file_range, "copy_file_range"},
    {SYS_creat, "creat"},
    {SYS_dup, "dup"},
    {SYS_dup2, "dup2"},
    {SYS_dup3, "dup3"},
    {SYS_faccessat, "faccessat"},
    {SYS_faccessat2, "faccessat2"},
    {SYS_fallocate, "fallocate"},
    {SYS_fchmod, "fchmod"},
    {SYS_fchmodat, "fchmodat"},
    {SYS_fchown, "fchown"},
    {SYS_fchownat, "fchownat"},
    {SYS_fcntl, "fcntl"},
    {SYS_fdatasync, "fdatasync"},
    {SYS_flock, "flock"},
    {SYS_fstat, "fstat"},
    {SYS_fstatfs, "fstatfs"},
    {SYS_fsync, "fsync"},
    {SYS_ftruncate, "ftruncate"},
    {SYS_getcwd, "getcwd"},
    {SYS_getdents64, "getdents64"},
    {SYS_ioctl, "ioctl"},
    {SYS_lchown, "lchown"},
    {SYS_link, "link"},
    {SYS_linkat, "linkat"},
    {SYS_lseek, "lseek"},
    {SYS_lstat, "lstat"},
    {SYS_mkdir, "mkdir"},
    {SYS_mkdirat, "mkdirat"},
    {SYS_msync, "msync"},
    {SYS_newfstatat, "newfstatat"},
    {SYS_open, "open"},
    {SYS_openat, "openat"},
    {SYS_pread64, "pread64"},
    {SYS_preadv, "preadv"},
    {SYS_pwrite64, "pwrite64"},
    {SYS_pwritev, "pwritev"},
    {SYS_read, "read"},
    {SYS_readlink, "readlink"},
    {SYS_readlinkat, "readlinkat"},
    {SYS_readv, "readv"},
    {SYS_rename, "rename"},
    {SYS_renameat, "renameat"},
    {SYS_renameat2, "renameat2"},
    {SYS_rmdir, "rmdir"},
    {SYS_sendfile, "sendfile"},
    {SYS_stat, "stat"},
    {SYS_statfs, "statfs"},
    {SYS_statx, "statx"},
    {SYS_symlink, "symlink"},
    {SYS_symlinkat, "symlinkat"},
    {SYS_sync, "sync"},
    {SYS_sync_file_range, "sync_file_range"},
    {SYS_syncfs, "syncfs"},
    {SYS_truncate, "truncate"},
    {SYS_unlink, "unlink"},
    {SYS_unlinkat, "unlinkat"},
    {SYS_utimensat, "utimensat"},
    {SYS_write, "write"},
    {SYS_writev, "writev"},
};

// Memory, time, signals and the process itself.
constexpr std::array kOtherCalls = {
    SYS_brk,
    SYS_clock_gettime,
    SYS_clock_nanosleep,
    SYS_exit_group,
    SYS_exit,
    SYS_futex,
    SYS_getegid,
    SYS_geteuid,
    SYS_getgid,
    SYS_getpid,
    SYS_getrandom,
    SYS_gettid,
    SYS_gettimeofday,
    SYS_getuid,
    SYS_madvise,
    SYS_mprotect,
    SYS_mremap,
    SYS_munmap,
    SYS_nanosleep,
    SYS_pipe2,
    SYS_prlimit64,
    SYS_restart_syscall,
    SYS_rseq,
    SYS_rt_sigaction,
    SYS_rt_sigprocmask,
    SYS_rt_sigreturn,
    SYS_sched_yield,
    SYS_set_robust_list,
    SYS_sigaltstack,
    SYS_tgkill,
};

bool isOtherCall(long number) {
  for (const long each : kOtherCalls) {
    if (each == number) return true;
  }
  return false;
}

/// The name of a call that touches a file. A mapping is one only where it is of
/// a file.
std::optional<std::string> fileCall(const user_regs_struct& registers) {
  const long number = static_cast<long>(registers.orig_rax);
  if (number == SYS_mmap) {
    if (static_cast<int>(registers.r8) < 0) return std::nullopt;
    return "mmap";
  }
  const auto found = kFileCalls.find(number);
  if (found == kFileCalls.end()) return std::nullopt;
  return found->second;
}

[[noreturn]] void fail(const char* what) {
  throw std::runtime_error(std::string("cannot trace a process: ") + what);
}

/// A stopped process under trace.
class Traced {
 public:
  explicit Traced(const std::function<int()>& work) : id_(fork()) {
    if (id_ < 0) fail("fork");
    if (id_ > 0) return;
    if (ptrace(PTRACE_TRACEME, 0, nullptr, nullptr) != 0) _exit(kNotTraced);
    raise(SIGSTOP);
    _exit(work());
  }
  Traced(const Traced&) = delete;
  Traced& operator=(const Traced&) = delete;
  ~Traced() {
    if (ended_) return;
    kill(id_, SIGKILL);
    waitpid(id_, nullptr, 0);
  }

  void begin() {
    if (!wait() || !WIFSTOPPED(status_) || WSTOPSIG(status_) != SIGSTOP) fail("not allowed");
    const long options = PTRACE_O_TRACESYSGOOD | PTRACE_O_EXITKILL;
    if (ptrace(PTRACE_SETOPTIONS, id_, nullptr, options) != 0) fail("options");
  }

  /// Lets it run up to its next system call, or out of one; false at its end.
  bool toNextStop() {
    int signal = 0;
    while (true) {
      if (ptrace(PTRACE_SYSCALL, id_, nullptr, static_cast<long>(signal)) != 0) fail("going on");
      if (!wait()) return false;
      if (WSTOPSIG(status_) == (SIGTRAP | 0x80)) return true;
      signal = WSTOPSIG(status_);
    }
  }

  [[nodiscard]] user_regs_struct registers() const {
    user_regs_struct registers{};
    if (ptrace(PTRACE_GETREGS, id_, nullptr, &registers) != 0) fail("registers");
    return registers;
  }
  void setRegisters(user_regs_struct registers) const {
    if (ptrace(PTRACE_SETREGS, id_, nullptr, &registers) != 0) fail("registers");
  }

  /// What its memory holds there.
  [[nodiscard]] long word(unsigned long long address) const {
    errno = 0;
    const long value = ptrace(PTRACE_PEEKDATA, id_, address, nullptr);
    if (errno != 0) fail("memory");
    return value;
  }

  void endIt() {
    kill(id_, SIGKILL);
    while (wait()) {
    }
  }

  [[nodiscard]] int status() const { return status_; }

 private:
  static constexpr int kNotTraced = 99;

  /// False once the process has ended.
  bool wait() {
    if (waitpid(id_, &status_, 0) != id_) fail("waiting");
    ended_ = !WIFSTOPPED(status_);
    return !ended_;
  }

  pid_t id_;
  int status_ = 0;
  bool ended_ = false;
};

/// The ends of pipes that the process has. They are no files: UBSan writes into a
/// pipe to learn whether memory can be read.
class Pipes {
 public:
  /// After a call was made that has these registers.
  void made(const Traced& process, const user_regs_struct& call) {
    if (static_cast<long>(call.orig_rax) != SYS_pipe2) return;
    if (static_cast<long>(process.registers().rax) != 0) return;
    const auto both = static_cast<unsigned long>(process.word(call.rdi));
    ends_.insert({both & 0xFFFFFFFF, both >> 32});
  }

  /// Whether a call that begins is on one of them; a close ends it.
  bool has(const user_regs_struct& call) {
    const long number = static_cast<long>(call.orig_rax);
    if (number != SYS_read && number != SYS_write && number != SYS_close) return false;
    if (!ends_.contains(call.rdi)) return false;
    if (number == SYS_close) ends_.erase(call.rdi);
    return true;
  }

 private:
  std::set<unsigned long long> ends_;
};

// In the place of a call that is not to be made.
constexpr unsigned long long kNoCall = ~0ULL;

/// What the fault does where a call begins; false where the process is gone.
bool atBeginning(Traced& process, const FaultAt& fault, const std::string& name) {
  user_regs_struct registers = process.registers();
  switch (fault.fault) {
    case Fault::killBefore:
      registers.orig_rax = kNoCall;
      process.setRegisters(registers);
      process.endIt();
      return false;
    case Fault::refused:
      // A close that fails has closed all the same.
      if (name == "close") return true;
      registers.orig_rax = kNoCall;
      process.setRegisters(registers);
      return true;
    case Fault::shortCount:
      if (registers.rdx > 1) registers.rdx /= 2;
      process.setRegisters(registers);
      return true;
    case Fault::killAfter:
    case Fault::none:
      break;
  }
  return true;
}

/// The same where it has been made.
bool atEnd(Traced& process, const FaultAt& fault) {
  if (fault.fault == Fault::killAfter) {
    process.endIt();
    return false;
  }
  if (fault.fault == Fault::refused) {
    user_regs_struct registers = process.registers();
    registers.rax = static_cast<unsigned long long>(-static_cast<long long>(fault.code));
    process.setRegisters(registers);
  }
  return true;
}

}  // namespace

bool transfersBytes(const std::string& fileCall) {
  return fileCall == "read" || fileCall == "write" || fileCall == "pread64" ||
         fileCall == "pwrite64";
}

TracedRun runTraced(const std::function<int()>& work, const FaultAt& fault) {
  TracedRun run;
  Traced process(work);
  process.begin();
  bool lives = true;
  Pipes pipes;
  while (lives && process.toNextStop()) {
    const user_regs_struct registers = process.registers();
    const bool isOfPipe = pipes.has(registers);
    const std::optional<std::string> name = isOfPipe ? std::nullopt : fileCall(registers);
    const long number = static_cast<long>(registers.orig_rax);
    const bool isAnonymous = number == SYS_mmap && !name;
    if (!name && !isAnonymous && !isOfPipe && !isOtherCall(number)) {
      run.unknownCalls.push_back(std::to_string(number));
    }
    const bool isHere = name && fault.fault != Fault::none && run.fileCalls.size() == fault.call;
    if (name) run.fileCalls.push_back(*name);
    if (isHere) {
      run.reached = true;
      lives = atBeginning(process, fault, *name);
    }
    // A process ends within the call that ends it.
    if (!lives || !process.toNextStop()) break;
    pipes.made(process, registers);
    if (isHere) lives = atEnd(process, fault);
  }
  run.killed = WIFSIGNALED(process.status());
  if (WIFEXITED(process.status())) run.exitStatus = WEXITSTATUS(process.status());
  return run;
}

}  // namespace vel::test
