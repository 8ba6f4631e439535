// A session of the program with a separate simulated world. Every test has one:
//
//     Session s;
//     EXPECT_EQ(s.run({"help", "exit"}), (ProcessOutcome{2, "...", ""}));
//     EXPECT_EQ(s.prompt("ctrl\nexit\n").status, 0);
//
// The world is the built-in one unless a test sets another. The world, the event file next to it and the
// clock persist between the runs of a session.
#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include "tests/e2e/process.h"
#include "tests/temp_dir.h"

// The clock of a new session, in seconds since the epoch.
inline constexpr std::int64_t kSessionStart = 1700000000;

// The outcome of a command that succeeds without output.
inline const ProcessOutcome kSilentSuccess = {0, "", ""};

struct Session {
    Session();
    Session(const Session&) = delete;
    Session& operator=(const Session&) = delete;

    // The program with these arguments, or at its prompt with this standard input.
    ProcessOutcome run(const std::vector<std::string>& words);
    ProcessOutcome prompt(const std::string& input);

    // The program at its prompt on a terminal; each text is typed at the next prompt. "\x04" is Ctrl-D.
    ProcessOutcome terminal(const std::vector<std::string>& typed);

    // Like run(), with standard input closed.
    ProcessOutcome runWithoutInput(const std::vector<std::string>& words);

    void setClock(std::int64_t seconds);
    void setVariable(const std::string& name, const std::string& value);

    // Makes the program prefer the libraries of a directory to those it was built with.
    void preferLibraries(const std::string& directory);

    // Makes later runs use cli itself instead of cli-rehearse. Since it uses the real event file, it
    // runs as user nobody, from a copy that this user can read, with these libraries.
    void useProduct(const std::string& libraries);

    void useWorld(const std::string& text) const;
    std::string worldText() const; // empty if there is none yet
    // The world without the record of refused operations and without its layout, for comparisons.
    std::string worldWithoutRefusals() const;
    std::string world() const; // paths
    std::string eventFile() const;
    std::string path(const std::string& name) const; // of a file next to the world

    const TempDir temporary;
    const std::string directory = temporary.path();
    std::string program;
    bool unprivileged = false;
    std::map<std::string, std::string> variables;
};

// The contents of a file; empty if it cannot be read.
std::string readFile(const std::string& path);
void writeFile(const std::string& path, const std::string& text);

// A world of tests/e2e/worlds, by its file name without ".json".
std::string fixtureWorld(const std::string& name);
