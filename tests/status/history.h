// Fixtures of the tests of cli-status --baseline and --changes.
#pragma once

#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "tests/e2e/harness.h"

using Json = nlohmann::ordered_json;

// A session whose world can be changed like a file; its earlier state is kept as "before.json".
struct History : testing::Test {
    Session session;
    Json world = Json::parse(readFile(STATUS_SOURCES "/healthy.world.json"));
    std::string before = session.path("before.json");

    void SetUp() override {
        session.program = CLI_STATUS;
        session.setClock(0);
        saveBaseline();
    }
    // The present world is what later ones are compared with.
    void saveBaseline() {
        session.useWorld(world.dump());
        writeFile(before, session.run({"--json"}).out);
    }
    Json& controller() { return world["controllers"][0]; }
    void expect(const std::vector<std::string>& words, int status, const std::string& output) {
        session.useWorld(world.dump());
        EXPECT_EQ(session.run(words), (ProcessOutcome{status, output, ""}));
    }
    void expectFindings(int status, const std::string& problems) {
        expect({"-q", "--baseline", before}, status, problems);
    }
    // The informational findings and the last line as well, without the line of the controller.
    void expectAll(int status, const std::string& output) {
        session.useWorld(world.dump());
        const ProcessOutcome outcome = session.run({"--baseline", before});
        EXPECT_EQ(outcome.status, status);
        EXPECT_EQ(outcome.out.substr(outcome.out.find('\n') + 1), output);
    }
};

// The changes since the state that the previous run saved.
struct Changes : History {
    std::string kept = session.path("kept");
    void expectChanges(int status, const std::string& output) { expect({"--changes", kept}, status, output); }
    void refuse(const std::string& operation) {
        world["rules"] = {{{"kind", "refuse"}, {"operation", operation}}};
    }
    void shorten(const std::string& operation) {
        world["rules"] = {{{"kind", "short"}, {"operation", operation}}};
    }
    void refuseNothing() { world["rules"] = Json::array(); }
};
