// A user's session with the program over a simulated world of its own. Every test has one:
//
//     Session s;
//     EXPECT_EQ(s.run({"help", "exit"}), (ProcessOutcome{2, "...", ""}));
//     EXPECT_EQ(s.prompt("ctrl\nexit\n").status, 0);
//
// The world is the built-in one unless a test gives another; it, the event file beside it and the
// clock last from one run to the next within a session.
#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include "tests/e2e/process.h"

// The clock of a new session, in seconds since the epoch.
inline constexpr std::int64_t kSessionStart = 1700000000;

struct Session {
    Session();  // makes a directory of its own
    ~Session(); // and removes it
    Session(const Session&) = delete;
    Session& operator=(const Session&) = delete;

    // The program with these arguments, or at its prompt with this standard input.
    ProcessOutcome run(const std::vector<std::string>& words);
    ProcessOutcome prompt(const std::string& input);

    // The program at its prompt on a terminal; each text is typed at the next prompt. "\x04" is Ctrl-D.
    ProcessOutcome terminal(const std::vector<std::string>& typed);

    // As run(), with nothing at all on standard input's place.
    ProcessOutcome runWithoutInput(const std::vector<std::string>& words);

    void setClock(std::int64_t seconds);
    void setVariable(const std::string& name, const std::string& value);

    // Puts a directory's libraries in front of those the program was built with.
    void preferLibraries(const std::string& directory);

    // From now on runs cli itself rather than its rehearsal. It knows the machine's real event file,
    // so it runs as nobody, from a copy that nobody may read, on the preferred libraries.
    void useProduct(const std::string& libraries);

    void useWorld(const std::string& text) const;
    std::string worldText() const; // empty when there is none yet
    std::string world() const;     // paths
    std::string eventFile() const;
    std::string path(const std::string& name) const; // of a file beside the world

    std::string directory;
    std::string program;
    bool unprivileged = false;
    std::map<std::string, std::string> variables;
};

// The whole of a file; empty when it cannot be read.
std::string readFile(const std::string& path);
void writeFile(const std::string& path, const std::string& text);

// A world kept in tests/e2e/worlds, by its file name without ".json".
std::string fixtureWorld(const std::string& name);
