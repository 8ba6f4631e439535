// Starting a program with an environment of its own and waiting for its end, with its standard
// streams on files and pipes or on a terminal.
#pragma once

#include <ostream>
#include <string>
#include <vector>

// How a program ended.
struct ProcessOutcome {
    int status = 0;       // exit status; 128 and the signal's number when a signal ended it
    std::string out, err; // all of standard output and standard error; of a terminal, all in out
    bool operator==(const ProcessOutcome&) const = default;
};
std::ostream& operator<<(std::ostream& stream, const ProcessOutcome& outcome);

// What to start. The first word is the program's path. Nothing but these variables is handed on.
struct Launch {
    std::vector<std::string> words;
    std::vector<std::string> variables; // NAME=value
    std::string directory;              // where the program starts; also takes its output while it runs
    bool inputClosed = false;           // start it without any standard input
    bool unprivileged = false;          // as nobody; refused with status 126 where the real event file
                                        // could still be written
};

// Runs it to its end with input on a pipe. A program that hangs is ended by a signal after a minute.
ProcessOutcome runProgram(const Launch& launch, const std::string& input);

// Runs it on a terminal of its own. Each text is typed when the program has printed one more awaited
// text than before; out is what the terminal showed: echo included, lines ending in "\r\n".
ProcessOutcome runOnTerminal(const Launch& launch, const std::string& awaited,
                             const std::vector<std::string>& typed);
