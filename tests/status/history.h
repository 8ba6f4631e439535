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

// Lists with fewer objects than the controller counts. A shortened list of three drives has the first two:
// one of each page.
inline const std::string kTwoOfThree = "controller 0: counts 3 drives, but lists 2\n";
inline const std::string kNoneOfOne = "controller 0: counts 1 logical drive, but lists 0\n";

struct ShortLists : Changes {
    void zero(const std::string& operation) {
        world["rules"] = {{{"kind", "zero"}, {"operation", operation}}};
    }
    // The healthy world with a second logical drive, on the free space of drives 1 and 2.
    void addArray() {
        for (const std::size_t drive : {0u, 1u})
            controller()["drives"][drive]["extents"][1] = {
                {"use", "array"}, {"array", 1}, {"start", 1024000}, {"size", 1024000}};
        Json second = controller()["logicalDrives"][0];
        second["arrayId"] = second["logDrvId"] = 1;
        second["name"] = "Mail";
        controller()["logicalDrives"].push_back(second);
    }
};
