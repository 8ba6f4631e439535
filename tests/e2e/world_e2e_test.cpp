// The world file of the simulator: created on first use, saved between runs, rejected when invalid.
#include <gtest/gtest.h>

#include <filesystem>

#include "tests/e2e/harness.h"

static std::string replaced(std::string text, const std::string& from, const std::string& to) {
    const std::size_t at = text.find(from);
    return at == std::string::npos ? "" : text.replace(at, from.size(), to);
}

TEST(World, IsCreatedOnFirstUseAndKept) {
    Session s;
    EXPECT_EQ(s.worldText(), "");
    EXPECT_EQ(s.run({"help", "exit"}).status, 2);
    const std::string made = s.worldText();
    EXPECT_NE(made, "");
    s.setClock(kSessionStart + 1000);
    EXPECT_EQ(s.run({"ctrl"}).status, 0);
    EXPECT_EQ(s.worldText(), made);
}

// Two controllers; the second has no enclosure.
TEST(World, BuiltInHasTwoControllers) {
    Session s;
    const std::string listing = s.run({"ctrl"}).out;
    EXPECT_EQ(std::count(listing.begin(), listing.end(), '\n'), 3);
    EXPECT_NE(listing.find("\n 0          ECC "), std::string::npos) << listing;
    EXPECT_NE(listing.find("\n 1      Non-ECC "), std::string::npos) << listing;
    const std::string blocks = s.run({"ctrl", "-v"}).out;
    EXPECT_NE(blocks.find("\nNumber of disks : 8\nNumber of arrays : 2\nNumber of enclosure : 1\n"
                          "Battery installed : Yes\n"),
              std::string::npos)
        << blocks;
    EXPECT_NE(blocks.find("\nNumber of disks : 4\nNumber of arrays : 1\nNumber of enclosure : 0\n"
                          "Battery installed : No\n"),
              std::string::npos)
        << blocks;
}

TEST(World, IsInStateDirectoryOfUser) {
    Session s;
    s.variables.erase("Q5SIM_WORLD");
    EXPECT_EQ(s.run({"help", "exit"}).status, 2);
    EXPECT_NE(readFile(s.path(".local/state/q5sim/world.json")), "");
    EXPECT_EQ(readFile(s.path(".local/state/q5sim/CLIEvent.dat")).size(), 20408u);
    s.setVariable("XDG_STATE_HOME", s.path("state"));
    EXPECT_EQ(s.run({"help", "exit"}).status, 2);
    EXPECT_NE(readFile(s.path("state/q5sim/world.json")), "");
    EXPECT_EQ(readFile(s.path("state/q5sim/CLIEvent.dat")).size(), 20408u);
}

TEST(World, WithoutControllersFailsAtStart) {
    Session s;
    s.useWorld("{\"controllers\": []}\n");
    EXPECT_EQ(s.run({"ctrl"}), (ProcessOutcome{5, "No controller is found in the system!\n", ""}));
    EXPECT_EQ(s.worldText(), "{\"controllers\": []}\n");
}

// The reason is one line on standard error, with the names of the file and the line number.
TEST(World, InvalidFileIsRejectedAndKept) {
    const std::string good = fixtureWorld("two_controllers");
    const std::pair<std::string, std::string> broken[] = {
        {"", ":1: "},
        {"{\n\"controllers\": [\n", ":3: "},
        {replaced(good, "\"memoryMb\": 128", "\"memoryMb\": \"much\""), ":8: "},
        {replaced(good, "\"eccMemory\": true", "\"eccMemory\": 1"), ":7: "},
        {replaced(good, "\"maxPorts\": 6", "\"maxPorts\": 256"), ":10: "},
        {replaced(good, "\"id\": 3", "\"id\": 16"), ":27: "},
    };
    for (const auto& [text, place] : broken) {
        Session s;
        s.useWorld(text);
        const ProcessOutcome outcome = s.run({"ctrl"});
        EXPECT_EQ(outcome.status, 10) << text;
        EXPECT_EQ(outcome.out, "Q5API is failed to initialized!\n") << text;
        EXPECT_EQ(outcome.err.find(s.world() + place), 0u) << outcome.err;
        EXPECT_EQ(std::count(outcome.err.begin(), outcome.err.end(), '\n'), 1) << outcome.err;
        EXPECT_EQ(s.worldText(), text);
        EXPECT_EQ(readFile(s.eventFile()), "");
    }
}

TEST(World, EditedFileIsReadByNextRun) {
    Session s;
    s.useWorld(fixtureWorld("two_controllers"));
    EXPECT_NE(s.run({"ctrl"}).out.find("   128 MB "), std::string::npos);
    s.useWorld(replaced(s.worldText(), "\"memoryMb\": 128", "\"memoryMb\": 4096"));
    EXPECT_NE(s.run({"ctrl"}).out.find("  4096 MB "), std::string::npos);
}

TEST(World, UnwritableFileRejectsChanges) {
    Session s;
    s.useWorld(fixtureWorld("two_controllers"));
    const std::string before = s.worldText();
    // A directory in place of the lock file makes it fail for root as well.
    std::filesystem::create_directory(s.world() + ".lock");
    const std::string line = s.world() + ": the world file cannot be locked: Is a directory\n";
    EXPECT_EQ(s.run({"ctrl", "-a", "mod", "-s", "mprate=99"}), (ProcessOutcome{0, "", line}));
    EXPECT_EQ(s.worldText(), before);
    const ProcessOutcome listing = s.run({"ctrl"});
    EXPECT_EQ(listing.status, 0);
    EXPECT_EQ(listing.err, "");
}
