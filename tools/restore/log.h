// The log of a restore: what was begun and what was done, so that an interrupted one can continue.
#pragma once

#include <string>

// Identifies a restore. An unfinished one with the same header is continued.
struct LogHeader {
    std::string identity;   // of the backup
    std::string controller; // "0"; "1->0": controller 0, from controller 1 of the backup
    std::string drives;     // the drive map
    bool operator==(const LogHeader&) const = default;
};

// The last restore in a log.
struct RestoreState {
    bool begun = false;
    bool finished = false;
    LogHeader header;
    int steps = 0;         // completed steps
    bool isInStep = false; // another one was begun, and may have had an effect
};

// Reads a log, which need not exist and may be empty. An incomplete last line is ignored. Returns an error
// message, empty on success. A file that does not begin like a log is an error.
std::string readLog(const std::string& path, RestoreState* state);

// A log opened for appending. addToLog() synchronizes each line with the disk. Both functions return an error
// message, empty on success.
struct Log {
    int file = -1;
};
std::string openLog(const std::string& path, Log* log);
std::string addToLog(const Log& log, const std::string& line);
void closeLog(Log* log);

// The lines of a log, without their time: "begin", then "step" with its text and "done" for each step, and
// "finished".
std::string beginLine(const LogHeader& header);
inline constexpr char kStep[] = "step";
inline constexpr char kStepDone[] = "done";
inline constexpr char kFinished[] = "finished";
