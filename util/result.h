// Result codes of the commands. The code of the last command is the program's exit status.
#pragma once

struct Result {
    enum Code : int {
        done = 0,           // also when there was nothing to do
        badValue = 1,       // an unknown option or an invalid value
        badCount = 2,       // the wrong number of words; also all help
        notFound = 5,       // the named object does not exist; no adapter at startup
        badId = 6,          // an ID that is not a decimal number
        badOffset = 7,      // an offset where an extent cannot be split
        refused = 8,        // the adapter refused the operation, or the drive is missing
        unknownCommand = 9, // an unknown command or action
        noAdapterApi = 10,  // the adapter library could not be initialized
        noFile = 12,        // a configuration file that cannot be opened or created
        badKeyword = 13,    // an invalid keyword in a configuration file
        emptyFile = 14,     // a configuration file that contains no words
        tooManyDrives = 16, // a configuration file exceeds what the controller has or an import accepts
    };
};

// Prints the message and a newline, and returns the code.
int fail(Result::Code code, const char* message);
