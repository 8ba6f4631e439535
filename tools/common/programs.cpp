// Finding and running other programs of the same installation.
#include "tools/common/programs.h"

#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <climits>
#include <cstdlib>

static bool isProgram(const std::string& path) {
    return access(path.c_str(), X_OK) == 0;
}

static std::string directoryOf(const std::string& path) {
    return path.substr(0, path.rfind('/') + 1);
}

static std::string absolute(const std::string& path) {
    char resolved[PATH_MAX];
    const std::string directory = directoryOf(path);
    if (realpath(directory.c_str(), resolved) == nullptr)
        return path;
    return std::string(resolved) + "/" + path.substr(directory.size());
}

// Searches PATH, as a shell does.
static std::string searchPath(const std::string& name) {
    const char* value = std::getenv("PATH");
    std::string rest = value != nullptr ? value : "";
    while (!rest.empty()) {
        const std::size_t colon = rest.find(':');
        const std::string directory = rest.substr(0, colon);
        rest = colon == std::string::npos ? "" : rest.substr(colon + 1);
        std::string path = (directory.empty() ? "." : directory) + "/" + name;
        if (isProgram(path))
            return path;
    }
    return "";
}

std::string siblingProgram(const char* argument0, const char* name) {
    const std::string started = argument0 != nullptr ? argument0 : "";
    const std::string self = started.find('/') != std::string::npos ? started : searchPath(started);
    if (self.empty())
        return "";
    const std::string sibling = directoryOf(self) + name;
    if (isProgram(sibling))
        return absolute(sibling);
    char resolved[PATH_MAX]; // started through a link
    if (realpath(self.c_str(), resolved) == nullptr)
        return "";
    const std::string target = directoryOf(resolved) + name;
    return isProgram(target) ? target : "";
}

static bool redirectStandardInput() {
    const int file = open("/dev/null", O_RDONLY);
    const bool redirected = file >= 0 && dup2(file, STDIN_FILENO) >= 0;
    if (file > STDERR_FILENO)
        close(file);
    return redirected;
}

[[noreturn]] static void execProgram(const ProgramRun& run, char* const* words, int output) {
    const bool ready = redirectStandardInput() && dup2(output, STDOUT_FILENO) >= 0 &&
                       dup2(output, STDERR_FILENO) >= 0 && chdir(run.directory.c_str()) == 0 &&
                       (run.inherited < 0 || fcntl(run.inherited, F_SETFD, 0) == 0);
    for (const auto& [name, value] : run.variables)
        setenv(name.c_str(), value.c_str(), 1);
    if (ready)
        execv(run.program.c_str(), words);
    _exit(127);
}

static void readAll(int file, std::string* text) {
    char buffer[4096];
    for (;;) {
        const ssize_t count = read(file, buffer, sizeof buffer);
        if (count > 0)
            text->append(buffer, static_cast<std::size_t>(count));
        else if (count == 0 || errno != EINTR)
            return;
    }
}

static int waitFor(pid_t child) {
    int status = 0;
    while (waitpid(child, &status, 0) < 0)
        if (errno != EINTR)
            return -1;
    if (WIFSIGNALED(status))
        return 128 + WTERMSIG(status);
    return WEXITSTATUS(status) == 127 ? -1 : WEXITSTATUS(status);
}

// Both ends are closed in the program that is run, whose output streams are copies of one.
static bool openPipe(int (&ends)[2]) {
    return pipe(ends) == 0 && fcntl(ends[0], F_SETFD, FD_CLOEXEC) == 0 &&
           fcntl(ends[1], F_SETFD, FD_CLOEXEC) == 0;
}

int runProgram(const ProgramRun& run, std::string* output) {
    std::string program = run.program;
    std::vector<std::string> words = run.words;
    std::vector<char*> arguments = {program.data()};
    for (std::string& word : words)
        arguments.push_back(word.data());
    arguments.push_back(nullptr);
    int ends[2];
    output->clear();
    if (!openPipe(ends))
        return -1;
    const pid_t child = fork();
    if (child == 0)
        execProgram(run, arguments.data(), ends[1]);
    close(ends[1]);
    if (child > 0)
        readAll(ends[0], output);
    close(ends[0]);
    return child > 0 ? waitFor(child) : -1;
}
