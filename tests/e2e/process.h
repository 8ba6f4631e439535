// Runs a program in a separate environment, with its standard streams connected to files and pipes or to a
// terminal.
#pragma once

#include <sys/types.h>

#include <functional>
#include <ostream>
#include <string>
#include <vector>

// How a program ended.
struct ProcessOutcome {
    int status = 0;       // exit status; 128 plus the signal's number if a signal ended it
    std::string out, err; // all of standard output and standard error; of a terminal, all in out
    bool operator==(const ProcessOutcome&) const = default;
};
std::ostream& operator<<(std::ostream& stream, const ProcessOutcome& outcome);

// What to start. The first word is the program's path. The environment consists of these variables only.
struct Launch {
    std::vector<std::string> words;
    std::vector<std::string> variables; // NAME=value
    std::string directory;              // working directory; also stores the output while the program runs
    bool inputClosed = false;           // start it without any standard input
    bool unprivileged = false;          // as user nobody; fails with status 126 if the real event file
                                        // could still be written
};

// Runs it to completion with its input on a pipe. A program that hangs is killed after a minute.
ProcessOutcome runProgram(const Launch& launch, const std::string& input);

// Runs it on a new terminal. Each text is typed after the program has printed the awaited text again; out is
// the output of the terminal, with the echo and lines ending in "\r\n".
ProcessOutcome runOnTerminal(const Launch& launch, const std::string& awaited,
                             const std::vector<std::string>& typed);

// The same with other actions than typing: each is performed after the program has printed its text.
struct TerminalStep {
    std::string awaited;
    std::function<void(int terminal, pid_t program)> act;
};
ProcessOutcome runOnTerminal(const Launch& launch, const std::vector<TerminalStep>& steps);
