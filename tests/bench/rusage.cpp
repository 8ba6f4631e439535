// Measures the resources of a command over several runs, with its output discarded:
//   rusage cpu RUNS PROGRAM WORD...      prints the minimum CPU time of the process tree, in microseconds
//   rusage memory RUNS PROGRAM WORD...   prints minimum, median and maximum of the peak memory, in KB
// This process is small because the kernel counts its memory as the command's until exec.
#include <fcntl.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>

static constexpr int kMaxRuns = 100;

// Runs the command once; false if it could not be started.
static bool runOnce(char** words, rusage* usage) {
    const pid_t child = fork();
    if (child == 0) {
        const int nothing = open("/dev/null", O_WRONLY);
        dup2(nothing, STDOUT_FILENO);
        execv(words[0], words);
        _exit(127);
    }
    int status = 0;
    return child > 0 && wait4(child, &status, 0, usage) == child && WIFEXITED(status) &&
           WEXITSTATUS(status) != 127;
}

static long microseconds(const timeval& time) {
    return static_cast<long>(time.tv_sec) * 1000000 + static_cast<long>(time.tv_usec);
}

static int compareNumbers(const void* left, const void* right) {
    const long a = *static_cast<const long*>(left), b = *static_cast<const long*>(right);
    return (a > b) - (a < b);
}

int main(int argc, char** argv) {
    const int runs = argc > 3 ? std::atoi(argv[2]) : 0;
    if (runs < 1 || runs > kMaxRuns)
        return 2;
    const bool memory = std::strcmp(argv[1], "memory") == 0;
    long figure[kMaxRuns] = {};
    for (int i = 0; i < runs; ++i) {
        rusage usage = {};
        if (!runOnce(argv + 3, &usage))
            return 1;
        figure[i] = memory ? usage.ru_maxrss : microseconds(usage.ru_utime) + microseconds(usage.ru_stime);
    }
    std::qsort(figure, static_cast<std::size_t>(runs), sizeof *figure, compareNumbers);
    if (memory)
        std::printf("%ld %ld %ld\n", figure[0], figure[runs / 2], figure[runs - 1]);
    else
        std::printf("%ld\n", figure[0]);
    return 0;
}
