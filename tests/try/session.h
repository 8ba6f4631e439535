// cli-try over worlds in the role of the real adapters. Their library terminates a program that calls
// anything but the operations that read, and it comes first in the library path.
#pragma once

#include <gtest/gtest.h>

#include <filesystem>

#include "tests/e2e/harness.h"

namespace fs = std::filesystem;

inline const std::string programs = PROGRAMS;

struct TrySession : Session {
    TrySession() {
        program = programs + "/cli-try";
        preferLibraries(GUARDED);
        setVariable("PATH", "/usr/bin:/bin");
        setVariable("TMPDIR", path("tmp"));
        setVariable("GUARDED_CALLS", calls());
        fs::create_directory(path("tmp"));
    }
    ~TrySession() {
        EXPECT_EQ(readFile(calls()), "");               // no changing operation of the real library
        EXPECT_TRUE(fs::is_empty(path("tmp")));         // nothing is left behind
        EXPECT_FALSE(fs::exists(path("CLIEvent.dat"))); // the events of the real adapters stay unread
    }
    std::string calls() const { return path("guarded.calls"); }
    // With this status and a report that contains this text.
    void expectReport(const std::vector<std::string>& words, int status, const std::string& text) {
        const ProcessOutcome outcome = run(words);
        EXPECT_EQ(outcome.status, status) << outcome.out;
        EXPECT_NE(outcome.out.find(text), std::string::npos) << outcome.out;
    }
    ProcessOutcome runList(const std::string& commands) {
        writeFile(path("plan"), commands);
        return run({"-f", path("plan")});
    }
};

inline const std::string kFooter = "\nNone of this has been done on the real adapters.\n";
