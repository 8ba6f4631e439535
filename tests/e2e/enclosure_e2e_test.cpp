// The enclosure command: sensors whose readings drift, and the locate lights of the drives.
#include <gtest/gtest.h>

#include <cstdlib>
#include <set>
#include <sstream>

#include "tests/e2e/harness.h"

struct Enclosure : testing::Test {
    Session s;
    Enclosure() { s.useWorld(fixtureWorld("drives_and_boxes")); }

    ProcessOutcome list(const std::string& enclosure) { return s.run({"enclosure", "-e", enclosure}); }
    ProcessOutcome locate(const std::string& enclosure, const std::string& seconds) {
        return s.run({"enclosure", "-a", "locate", "-e", enclosure, "-i", "0", "-s", seconds});
    }
    // Which of the first four drives blink, a digit each.
    std::string blinkingDrives() {
        std::string on;
        for (const char* drive : {"1", "2", "3", "4"})
            if (s.run({"phydrv", "-v", "-p", drive}).out.find("Locate Status : On") != std::string::npos)
                on += drive;
        return on;
    }
};

namespace {
struct Reading {
    std::string name;
    double usual; // value that the reading drifts around
    std::string unit;
};
} // namespace

// Expects the lines of these sensors, each reading within 5 % of its usual value.
static void expectReadings(const std::string& listing, const std::string& head,
                           const std::vector<Reading>& readings) {
    std::istringstream stream(listing);
    std::string line;
    std::getline(stream, line);
    EXPECT_EQ(line, head);
    for (const Reading& reading : readings) {
        std::getline(stream, line);
        ASSERT_EQ(line.substr(0, reading.name.size() + 3), reading.name + " : ");
        char* end = nullptr;
        EXPECT_NEAR(std::strtod(line.c_str() + reading.name.size() + 3, &end), reading.usual,
                    reading.usual / 20)
            << line;
        EXPECT_EQ(std::string(end), reading.unit) << line;
    }
    EXPECT_FALSE(std::getline(stream, line)) << line;
}

TEST_F(Enclosure, ShowsTheSensorsOfALargeTraybox) {
    const std::vector<Reading> readings = {{"Fan speed #1", 3000, " "},
                                           {"Temperature #1", 35, " C"},
                                           {"Fan speed #2", 4000, " "},
                                           {"5 Voltage", 5.00, " V"},
                                           {"12 Voltage", 12.00, " V"}};
    for (const std::vector<std::string>& words :
         {std::vector<std::string>{"enclosure"}, {"ENCLOSURE", "-A", "LIST"}, {"enclosure", "-i", "0"}}) {
        const ProcessOutcome outcome = s.run(words);
        EXPECT_EQ(outcome.status, 0);
        expectReadings(outcome.out, "Enclosure type : Traybox 400", readings);
    }
}

TEST_F(Enclosure, ShowsTheSensorsOfASmallTraybox) {
    const ProcessOutcome outcome = list("1");
    EXPECT_EQ(outcome.status, 0);
    expectReadings(outcome.out, "Enclosure type : Traybox 100",
                   {{"12 Voltage", 12.00, " V"},
                    {"Temperature", 35, " C"},
                    {"Temperature", 40, " C"},
                    {"Fan speed", 3000, " "}});
}

TEST_F(Enclosure, ReadingsDependOnTime) {
    std::set<std::string> listings;
    for (std::int64_t time = 0; time < 300; time += 50) {
        s.setClock(kSessionStart + time);
        const std::string listing = list("0").out;
        EXPECT_EQ(list("0").out, listing);
        listings.insert(listing);
    }
    EXPECT_GT(listings.size(), 1u);
}

TEST_F(Enclosure, PrintsNothingForOtherTypes) {
    for (const char* enclosure : {"2", "3", "4", "5"})
        EXPECT_EQ(list(enclosure), kSilentSuccess);
}

TEST_F(Enclosure, ReportsMissingEnclosures) {
    EXPECT_EQ(list("6"), (ProcessOutcome{0, "no enclosure with ID 6 in controller #0 is present!\n", ""}));
    EXPECT_EQ(s.run({"enclosure", "-i", "1"}),
              (ProcessOutcome{0, "no enclosure with ID 0 in controller #1 is present!\n", ""}));
    EXPECT_EQ(locate("6", "30"),
              (ProcessOutcome{5, "no enclosure with ID 6 in controller #0 is exist!\n", ""}));
    EXPECT_EQ(s.prompt("enclosure -a locate -i 9\nexit\n"),
              (ProcessOutcome{5, "cli>no enclosure with ID 0 in controller #9 is exist!\ncli>", ""}));
}

// Compatibility: the search reads the drives' second extent entries, which are zero. It finds drive 1 for
// every drive of enclosure 0, and nothing for any other enclosure.
TEST_F(Enclosure, BlinksOnlyDriveOneForEnclosureZero) {
    EXPECT_EQ(locate("0", "30"), kSilentSuccess);
    EXPECT_EQ(blinkingDrives(), "1");
    s.setClock(kSessionStart + 31);
    EXPECT_EQ(blinkingDrives(), "");
    EXPECT_EQ(locate("1", "30"), kSilentSuccess);
    EXPECT_EQ(locate("5", "30"), kSilentSuccess);
    EXPECT_EQ(blinkingDrives(), "");
}

TEST_F(Enclosure, StopsBlinkingWithoutDuration) {
    EXPECT_EQ(locate("0", "4000000000"), kSilentSuccess);
    EXPECT_EQ(blinkingDrives(), "1");
    EXPECT_EQ(locate("0", "0"), kSilentSuccess);
    EXPECT_EQ(blinkingDrives(), "");
    locate("0", "30");
    EXPECT_EQ(s.run({"enclosure", "-a", "locate"}), kSilentSuccess);
    EXPECT_EQ(blinkingDrives(), "");
}

TEST_F(Enclosure, RejectsBadWords) {
    EXPECT_EQ(list("x"), (ProcessOutcome{6, "Invalid enclosure ID 'x' specified\n", ""}));
    EXPECT_EQ(s.run({"enclosure", "-v"}), (ProcessOutcome{1, "Invalid command for \"enclosure\"\n", ""}));
    EXPECT_EQ(s.run({"enclosure", "-a", "mod"}),
              (ProcessOutcome{9, "Invalid command for \"enclosure\"\n", ""}));
    EXPECT_EQ(locate("0", "x"), (ProcessOutcome{1, "Invalid seconds 'x' specified\n", ""}));
    EXPECT_EQ(locate("x", "x"), (ProcessOutcome{6, "Invalid enclosure ID 'x' specified\n", ""}));
}

TEST_F(Enclosure, RepeatsUnknownOptionMessageUntilBrokenPipe) {
    const std::string script = "{ \"$0\" enclosure -a locate -f 1; echo $? >status; } | "
                               "{ read -r first; read -r second; echo \"$first\"; echo \"$second\"; }";
    const std::string program = s.program;
    s.program = "/bin/sh";
    const std::string message = "Invalid command for \"enclosure\"\n";
    EXPECT_EQ(s.run({"-c", script, program}), (ProcessOutcome{0, message + message, ""}));
    EXPECT_EQ(readFile(s.path("status")), "141\n"); // SIGPIPE
}
