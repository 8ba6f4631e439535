// Runs a program and injects a fault at one of its system calls. Linux on x86-64 only.
//
//     fault_injector count FILE PROGRAM ARGUMENT...        writes the number of its calls to FILE
//     fault_injector kill N PROGRAM ARGUMENT...            kills it before its call number N
//     fault_injector signal:SIGNAL N PROGRAM ARGUMENT...   sends it a signal before that call
//     fault_injector error:ERRNO N PROGRAM ARGUMENT...     fails that call with an errno, unexecuted
//
// Calls count from 1, starting at the program's first instruction. With @NUMBER after the first word, only
// calls of that number count. The exit status is that of the program, 77 if processes cannot be traced here,
// or 78 if the call was not reached.
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <sys/ptrace.h>
#include <sys/syscall.h>
#include <sys/user.h>
#include <sys/wait.h>
#include <unistd.h>

static constexpr int kNoTracing = 77, kNotReached = 78;

namespace {
enum class FaultKind { count, kill, signal, error };

struct Fault {
    FaultKind kind;
    int value; // the signal or the errno
    long call;
    long number; // of the system call; -1: all are counted
};
} // namespace

static long numberAfter(const std::string& text, char mark, long fallback) {
    const std::size_t place = text.find(mark);
    return place == std::string::npos ? fallback : std::atol(text.c_str() + place + 1);
}

static Fault parseFault(const std::string& kind, const char* call) {
    const long number = numberAfter(kind, '@', -1);
    const int value = static_cast<int>(numberAfter(kind, ':', SIGKILL));
    switch (kind[0]) {
    case 'k':
        return {FaultKind::kill, SIGKILL, std::atol(call), number};
    case 's':
        return {FaultKind::signal, value, std::atol(call), number};
    case 'e':
        return {FaultKind::error, value, std::atol(call), number};
    default:
        return {FaultKind::count, 0, 0, number};
    }
}

static int reportStatus(int status) {
    if (WIFEXITED(status))
        return WEXITSTATUS(status);
    std::signal(WTERMSIG(status), SIG_DFL);
    std::raise(WTERMSIG(status));
    return 128 + WTERMSIG(status);
}

// brk() reports a failure by returning the unchanged end of the heap, as it does for the argument 0.
static bool isBrk(const user_regs_struct& registers) {
    return registers.orig_rax == SYS_brk;
}

// Replaces the system call about to be made with an invalid one. Returns its first argument.
static unsigned long long skipCall(pid_t child) {
    user_regs_struct registers = {};
    ptrace(PTRACE_GETREGS, child, nullptr, &registers);
    const unsigned long long argument = registers.rdi;
    if (isBrk(registers))
        registers.rdi = 0;
    else
        registers.orig_rax = static_cast<unsigned long long>(-1);
    ptrace(PTRACE_SETREGS, child, nullptr, &registers);
    return argument;
}

static void returnError(pid_t child, int error, unsigned long long argument) {
    user_regs_struct registers = {};
    ptrace(PTRACE_GETREGS, child, nullptr, &registers);
    registers.rdi = argument;
    if (!isBrk(registers))
        registers.rax = static_cast<unsigned long long>(-error);
    ptrace(PTRACE_SETREGS, child, nullptr, &registers);
}

static bool isCallStop(int status) {
    return WIFSTOPPED(status) && WSTOPSIG(status) == (SIGTRAP | 0x80);
}

static bool isCounted(pid_t child, const Fault& fault) {
    user_regs_struct registers = {};
    ptrace(PTRACE_GETREGS, child, nullptr, &registers);
    return fault.number < 0 || registers.orig_rax == static_cast<unsigned long long>(fault.number);
}

// The signal to deliver when the program continues: 0 if tracing itself stopped it.
static long pendingSignal(int status) {
    return WIFSTOPPED(status) && WSTOPSIG(status) != SIGTRAP && !isCallStop(status) ? WSTOPSIG(status) : 0;
}

// Called before and after each call of the program.
static void inject(pid_t child, const Fault& fault, bool before) {
    static unsigned long long argument = 0; // of the call that fails
    if (fault.kind == FaultKind::kill || fault.kind == FaultKind::signal)
        kill(child, before ? fault.value : 0);
    else if (fault.kind == FaultKind::error && before)
        argument = skipCall(child);
    else if (fault.kind == FaultKind::error)
        returnError(child, fault.value, argument);
}

static int trace(pid_t child, const Fault& fault, long* calls) {
    int status = 0;
    long signal = 0;
    bool counted = false;
    bool inside = false; // between the stops before and after a call
    while (ptrace(PTRACE_SYSCALL, child, nullptr, signal) == 0 && waitpid(child, &status, 0) == child &&
           WIFSTOPPED(status)) {
        signal = pendingSignal(status);
        if (!isCallStop(status))
            continue;
        inside = !inside;
        if (inside)
            counted = isCounted(child, fault);
        *calls += inside && counted;
        if (counted && *calls == fault.call)
            inject(child, fault, inside);
    }
    if (WIFSTOPPED(status)) // killed while stopped
        waitpid(child, &status, 0);
    return status;
}

// Signals that this program was started to ignore, by nohup for example, would be ignored there too.
[[noreturn]] static void execChild(char** words) {
    for (const int signal : {SIGHUP, SIGINT, SIGQUIT, SIGTERM, SIGPIPE, SIGTSTP, SIGTTOU})
        std::signal(signal, SIG_DFL);
    if (ptrace(PTRACE_TRACEME, 0, nullptr, nullptr) != 0)
        _exit(kNoTracing);
    execv(words[0], words);
    _exit(kNoTracing);
}

int main(int argc, char** argv) {
    if (argc < 4)
        return kNoTracing;
    const Fault fault = parseFault(argv[1], argv[2]);
    const pid_t child = fork();
    if (child == 0)
        execChild(argv + 3);
    int status = 0;
    if (waitpid(child, &status, 0) != child || !WIFSTOPPED(status))
        return kNoTracing;
    ptrace(PTRACE_SETOPTIONS, child, nullptr, PTRACE_O_TRACESYSGOOD | PTRACE_O_EXITKILL);
    long calls = 0;
    status = trace(child, fault, &calls);
    if (fault.kind == FaultKind::count) {
        std::FILE* file = std::fopen(argv[2], "w");
        if (file != nullptr && std::fprintf(file, "%ld\n", calls) > 0)
            std::fclose(file);
    }
    return fault.kind != FaultKind::count && calls < fault.call ? kNotReached : reportStatus(status);
}
