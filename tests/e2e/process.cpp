// Starting programs: fork, exec, pipes, terminals.
#include "tests/e2e/process.h"

#include <fcntl.h>
#include <grp.h>
#include <sys/ioctl.h>
#include <sys/wait.h>
#include <termios.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <stdexcept>

static constexpr unsigned kTimeoutSeconds = 60;
static constexpr uid_t kNobody = 65534;

std::ostream& operator<<(std::ostream& stream, const ProcessOutcome& outcome) {
    return stream << "status " << outcome.status << "\n--- out\n"
                  << outcome.out << "--- err\n"
                  << outcome.err;
}

static void require(bool good, const char* what) {
    if (!good)
        throw std::runtime_error(what);
}

static std::vector<char*> pointersTo(const std::vector<std::string>& texts) {
    std::vector<char*> pointers;
    for (const std::string& text : texts)
        pointers.push_back(const_cast<char*>(text.c_str()));
    pointers.push_back(nullptr);
    return pointers;
}

// Drops root privileges and checks that the real event file cannot be written.
static bool dropPrivileges() {
    if (geteuid() == 0 && (setgroups(0, nullptr) != 0 || setgid(kNobody) != 0 || setuid(kNobody) != 0))
        return false;
    return access("/usr/sbin", W_OK) != 0 && access("/usr/sbin/CLIEvent.dat", W_OK) != 0;
}

// The rest of the child process, once its streams are connected. The alarm persists across the exec.
[[noreturn]] static void execChild(const Launch& launch) {
    alarm(kTimeoutSeconds);
    std::signal(SIGPIPE, SIG_DFL);
    const std::vector<char*> words = pointersTo(launch.words), variables = pointersTo(launch.variables);
    if (chdir(launch.directory.c_str()) == 0 && (!launch.unprivileged || dropPrivileges()))
        execve(words[0], words.data(), variables.data());
    _exit(126);
}

static int waitFor(pid_t child) {
    int state = 0;
    while (waitpid(child, &state, 0) < 0)
        require(errno == EINTR, "cannot wait for the program");
    return WIFEXITED(state) ? WEXITSTATUS(state) : 128 + WTERMSIG(state);
}

static int outputFile(const std::string& path) {
    const int file = open(path.c_str(), O_RDWR | O_CREAT | O_TRUNC | O_CLOEXEC, 0600);
    require(file >= 0, "cannot make an output file");
    return file;
}

static std::string takeFile(int file, const std::string& path) {
    close(file);
    std::ifstream stream(path, std::ios::binary);
    std::string text{std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()};
    unlink(path.c_str());
    return text;
}

// Writes all of the input; what the program does not read before it exits is discarded.
static void writeAll(int pipe, const std::string& input) {
    for (std::size_t done = 0; done < input.size();) {
        const ssize_t written = write(pipe, input.data() + done, input.size() - done);
        if (written < 0 && errno != EINTR)
            break;
        done += written > 0 ? static_cast<std::size_t>(written) : 0;
    }
    close(pipe);
}

ProcessOutcome runProgram(const Launch& launch, const std::string& input) {
    std::signal(SIGPIPE, SIG_IGN);
    const std::string outPath = launch.directory + "/.out", errPath = launch.directory + "/.err";
    const int out = outputFile(outPath), err = outputFile(errPath);
    int ends[2];
    require(pipe(ends) == 0, "cannot make a pipe");
    const pid_t child = fork();
    require(child >= 0, "cannot start a process");
    if (child == 0) {
        dup2(ends[0], 0);
        close(ends[0]);
        close(ends[1]);
        if (launch.inputClosed)
            close(0);
        dup2(out, 1);
        dup2(err, 2);
        execChild(launch);
    }
    close(ends[0]);
    writeAll(ends[1], input);
    ProcessOutcome outcome;
    outcome.status = waitFor(child);
    outcome.out = takeFile(out, outPath);
    outcome.err = takeFile(err, errPath);
    return outcome;
}

static int openTerminal() {
    const int terminal = posix_openpt(O_RDWR | O_NOCTTY);
    require(terminal >= 0 && grantpt(terminal) == 0 && unlockpt(terminal) == 0, "cannot make a terminal");
    return terminal;
}

// In the child process: the terminal becomes all three standard streams and the controlling terminal.
static void useTerminal(int terminal) {
    setsid();
    const int line = open(ptsname(terminal), O_RDWR);
    ioctl(line, TIOCSCTTY, 0);
    for (int stream = 0; stream <= 2; ++stream)
        dup2(line, stream);
    if (line > 2)
        close(line);
    close(terminal);
}

// Reads until shown contains the awaited text after *from, and moves *from past it; false if the program
// has closed the terminal.
static bool readUntil(int terminal, const std::string& awaited, std::string* shown, std::size_t* from) {
    char piece[4096];
    for (;;) {
        const std::size_t found = shown->find(awaited, *from);
        if (found != std::string::npos) {
            *from = found + awaited.size();
            return true;
        }
        const ssize_t length = read(terminal, piece, sizeof piece);
        if (length < 0 && errno == EINTR)
            continue;
        if (length <= 0)
            return false;
        shown->append(piece, static_cast<std::size_t>(length));
    }
}

static void readToEnd(int terminal, std::string* shown) {
    char piece[4096];
    for (ssize_t length = 0;
         (length = read(terminal, piece, sizeof piece)) > 0 || (length < 0 && errno == EINTR);)
        if (length > 0)
            shown->append(piece, static_cast<std::size_t>(length));
}

ProcessOutcome runOnTerminal(const Launch& launch, const std::vector<TerminalStep>& steps) {
    const int terminal = openTerminal();
    const pid_t child = fork();
    require(child >= 0, "cannot start a process");
    if (child == 0) {
        useTerminal(terminal);
        execChild(launch);
    }
    ProcessOutcome outcome;
    std::size_t from = 0;
    for (const TerminalStep& step : steps)
        if (readUntil(terminal, step.awaited, &outcome.out, &from))
            step.act(terminal, child);
    readToEnd(terminal, &outcome.out);
    outcome.status = waitFor(child);
    close(terminal);
    return outcome;
}

ProcessOutcome runOnTerminal(const Launch& launch, const std::string& awaited,
                             const std::vector<std::string>& typed) {
    std::vector<TerminalStep> steps;
    for (const std::string& text : typed)
        steps.push_back({awaited, [&text](int terminal, pid_t) {
                             require(write(terminal, text.data(), text.size()) ==
                                         static_cast<ssize_t>(text.size()),
                                     "cannot type at the terminal");
                         }});
    return runOnTerminal(launch, steps);
}
