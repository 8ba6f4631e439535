// A session with cli-backup, and the backups in its directory "kept".
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <map>

#include "tests/e2e/harness.h"

using Words = std::vector<std::string>;
using Files = std::map<std::string, std::string>; // names and contents

struct BackupSession : testing::Test {
    Session session;
    std::string kept = session.path("kept");

    void SetUp() override {
        session.program = CLI_BACKUP;
        session.useWorld(fixtureWorld("every_level"));
        std::filesystem::create_directory(kept);
    }
    ProcessOutcome backup(const Words& more = {}) {
        Words words = {"-d", "kept", "--cli", E2E_REHEARSAL};
        words.insert(words.end(), more.begin(), more.end());
        return session.run(words);
    }
    ProcessOutcome cli(const Words& words) { return runOther(E2E_REHEARSAL, words); }
    ProcessOutcome q5sim(const Words& words) { return runOther(E2E_Q5SIM, words); }
    ProcessOutcome runOther(const std::string& program, const Words& words) {
        session.program = program;
        const ProcessOutcome outcome = session.run(words);
        session.program = CLI_BACKUP;
        return outcome;
    }
    void useHealthyWorld() { session.useWorld(readFile(STATUS_SOURCES "/healthy.world.json")); }
    // That of the healthy world.
    void removeSpare() {
        ASSERT_EQ(cli({"extent", "-a", "free", "-p", "3", "-e", "0", "-i", "0"}).status, 0);
    }
    void changeRate(int rate) {
        ASSERT_EQ(cli({"ctrl", "-a", "mod", "-i", "0", "-s", "syncrate=" + std::to_string(rate)}).status, 0);
    }
    void removeBackups() const {
        std::filesystem::remove_all(kept);
        std::filesystem::create_directory(kept);
    }
    // All files but those in the work directory.
    Files files() const {
        Files found;
        for (const auto& entry : std::filesystem::directory_iterator(kept))
            if (entry.is_regular_file())
                found[entry.path().filename().string()] = readFile(entry.path().string());
        return found;
    }
    // The paths of the backups without their suffix, oldest first.
    std::vector<std::string> stems() const {
        std::vector<std::string> found;
        for (const auto& [name, content] : files())
            if (std::filesystem::path(name).extension() == ".cfg")
                found.push_back("kept/" + std::filesystem::path(name).stem().string());
        return found;
    }
    std::string newest() const { return stems().empty() ? "" : stems().back(); }
    std::string content(const std::string& name) const { return readFile(session.path(name)); }
};
