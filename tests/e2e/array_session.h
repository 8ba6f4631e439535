// A session on eight drives of 800 MB, and helpers for tests of arrays. All rates are 8 MB per second, so
// that an activity on a whole drive advances by one percent per second.
#pragma once

#include <gtest/gtest.h>

#include <sstream>

#include "tests/e2e/harness.h"

struct Arrays : testing::Test {
    Session s;
    Arrays() { s.useWorld(fixtureWorld("eight_drives")); }

    // Sets the clock, in seconds of the session.
    void advanceClockTo(int seconds) { s.setClock(kSessionStart + seconds); }

    // The outcome of a run as one text, "status: output". The last word, if not empty, may contain blanks.
    std::string outcomeOf(const std::string& line, const std::string& lastWord = "") {
        std::istringstream stream(line);
        std::vector<std::string> words;
        for (std::string word; stream >> word;)
            words.push_back(word);
        if (!lastWord.empty())
            words.push_back(lastWord);
        return outcomeOf(words);
    }
    std::string outcomeOf(const std::vector<std::string>& words) {
        const ProcessOutcome outcome = s.run(words);
        return std::to_string(outcome.status) + ": " + outcome.out + outcome.err;
    }

    // Creates an array; the adapter chooses the extents.
    std::string add(const std::string& drives, const std::string& text) {
        return outcomeOf({"logdrv", "-a", "add", "-p", drives, "-z", text});
    }

    // A RAID5 of 1600 MB on drives 1 to 3, synchronized by second 100.
    void addRaid5() {
        EXPECT_EQ(add("1 2 3", "name=five,raid=raid5,capacity=1600"), "0: ");
        advanceClockTo(100);
    }

    // The row of a logical drive in the table.
    std::string row(int logDrv) {
        const std::string table = s.run({"logdrv", "-l", std::to_string(logDrv)}).out;
        return table.substr(table.find('\n') + 1);
    }

    // The lines of a drive's block from its lost members to its functional state.
    std::string state(int logDrv) {
        const std::string block = s.run({"logdrv", "-v", "-l", std::to_string(logDrv)}).out;
        const std::size_t members = block.find("Disk members with ID"), from = block.find('\n', members) + 1;
        return block.substr(from, block.find("Driver Cache Mode") - from);
    }

    // The lines of bga about a drive.
    std::string bga(int logDrv) { return outcomeOf("bga -l " + std::to_string(logDrv)); }

    // The events not shown before.
    std::string events() { return s.run({"event", "-v", "-c", "50"}).out; }

    // Edits the world file: replaces the first text from ... to after the start of a drive's entry. Drives
    // are counted from 1.
    void editDrive(int drive, const std::string& from, const std::string& to, const std::string& by) const {
        std::string text = s.worldText();
        const std::size_t entry = text.find("\"id\": " + std::to_string(drive - 1) + ",");
        const std::size_t start = text.find(from, entry), end = text.find(to, start) + to.size();
        ASSERT_NE(start, std::string::npos);
        text.replace(start, end - start, by);
        s.useWorld(text);
    }
    void failDrive(int drive) const { editDrive(drive, "\"failed\": ", "false", "\"failed\": true"); }
    void replaceDrive(int drive) const {
        editDrive(drive, "\"failed\": ", "true", "\"failed\": false");
        editDrive(drive, "\"extents\": [", "]",
                  "\"extents\": [{\"use\": \"free\", \"start\": 0, \"size\": 1638400}]");
    }
};

inline const std::string kOnlineLine = "Array functional status : Online\n";
inline const std::string kIdleLine = "Array activity status : Idle\n";
inline const std::string kIdleOutcome = "0: " + kIdleLine;
