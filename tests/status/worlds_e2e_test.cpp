// cli-status over the worlds of the other tests: the complete output of every format, JSON and metrics as
// derive_output derives them from the world's file, detailed text and page as derived from that JSON; and
// what all outputs over all worlds must satisfy: the JSON its schema, the metrics promtool.
#include <gtest/gtest.h>
#include <sys/wait.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <nlohmann/json.hpp>
#include <sstream>

#include "tests/status/expected_report.h"

namespace fs = std::filesystem;
using Json = nlohmann::ordered_json;

static const std::string root = STATUS_ROOT;

static int shell(const std::string& command) {
    const int status = std::system(command.c_str());
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

struct WorldCase {
    const char* world;
    int status;
    const char* text;
    const char* plugin; // its first line; the findings follow
};

static const WorldCase worldCases[] = {
    {"simulator/worlds/bench.json", 0,
     "controller 0: 8 drives, 0 logical drives, 0 enclosures, no battery\n"
     "all well: 1 controller, 8 drives, 0 logical drives\n",
     "SATARAID OK: all well: 1 controller, 8 drives, 0 logical drives | critical=0;;;0 warning=0;;;0 "
     "unknown=0;;;0 controllers=1;;;0 drives=8;;;0 logical_drives=0;;;0 lost_members=0;;;0"},
    {"simulator/worlds/enclosures.json", 0,
     "controller 0: 8 drives, 0 logical drives, 7 enclosures, no battery\n"
     "all well: 1 controller, 8 drives, 0 logical drives\n",
     "SATARAID OK: all well: 1 controller, 8 drives, 0 logical drives | critical=0;;;0 warning=0;;;0 "
     "unknown=0;;;0 controllers=1;;;0 drives=8;;;0 logical_drives=0;;;0 lost_members=0;;;0 "
     "c0_e0_temperature=35;@50:;@60: c0_e1_temperature=28;@50:;@60:"},
    {"simulator/worlds/degraded.json", 2,
     "controller 0: 10 drives, 3 logical drives, 0 enclosures, no battery\n"
     "critical: logical drive 2 offline of controller 0: offline: its data cannot be reached (RAID0)\n"
     "critical: logical drive 0 critical of controller 0: critical: no redundancy is left (RAID5)\n"
     "warning: logical drive 1 degraded of controller 0: degraded: part of its redundancy is lost (RAIDMF)\n"
     "warning: drive 2 of controller 0: lost by logical drive 0 critical; channel 1, serial TQB0001\n"
     "warning: drive 5 of controller 0: lost by logical drive 1 degraded; channel 4, serial TQB0004\n"
     "warning: drive 9 of controller 0: lost by logical drive 2 offline; channel 8, serial TQB0008\n"
     "warning: logical drive 0 critical of controller 0: no replacement is coming: there is no suitable "
     "spare\n"
     "warning: logical drive 1 degraded of controller 0: no replacement is coming: there is no suitable "
     "spare\n"
     "warning: logical drive 0 critical of controller 0: set to write back, but the controller has no "
     "battery\n"
     "warning: logical drive 1 degraded of controller 0: set to write back, but the controller has no "
     "battery\n"
     "warning: logical drive 2 offline of controller 0: set to write back, but the controller has no "
     "battery\n"
     "11 problems, 2 of them critical\n",
     "SATARAID CRITICAL: 11 problems, 2 of them critical | critical=2;;;0 warning=9;;;0 unknown=0;;;0 "
     "controllers=1;;;0 drives=10;;;0 logical_drives=3;;;0 lost_members=3;;;0"},
    {"simulator/worlds/large.json", 1,
     "controller 0: 3 drives, 1 logical drive, 0 enclosures, no battery\n"
     "warning: logical drive 0 large of controller 0: set to write back, but the controller has no battery\n"
     "info: logical drive 0 large of controller 0: has no spare\n"
     "1 problem\n",
     "SATARAID WARNING: 1 problem | critical=0;;;0 warning=1;;;0 unknown=0;;;0 controllers=1;;;0 "
     "drives=3;;;0 logical_drives=1;;;0 lost_members=0;;;0"},
    {"simulator/worlds/settings.json", 0,
     "controller 0: 3 drives, 1 logical drive, 0 enclosures, battery charging\n"
     "info: logical drive 3 A name that is a good deal longer than settings can carry of controller 0: has "
     "no spare\n"
     "all well: 1 controller, 3 drives, 1 logical drive\n",
     "SATARAID OK: all well: 1 controller, 3 drives, 1 logical drive | critical=0;;;0 warning=0;;;0 "
     "unknown=0;;;0 controllers=1;;;0 drives=3;;;0 logical_drives=1;;;0 lost_members=0;;;0 "
     "c0_battery_temperature=-0.5;@45:;@60:"},
    {"simulator/worlds/empty.json", 3,
     "unknown: this host: no controller is found\n"
     "1 problem, unknown\n",
     "SATARAID UNKNOWN: 1 problem, unknown | critical=0;;;0 warning=0;;;0 unknown=1;;;0 controllers=0;;;0 "
     "drives=0;;;0 logical_drives=0;;;0 lost_members=0;;;0"},
    {"e2e/worlds/two_controllers.json", 0,
     "controller 0: 3 drives, 1 logical drive, 2 enclosures, battery charging\n"
     "controller 1: 1 drive, 0 logical drives, 0 enclosures, no battery\n"
     "info: this host: firmware versions differ: 5.6.7.8 on controller 0, 50.0.0.1 on controller 1\n"
     "info: this host: driver versions differ: 9.10.11.12 on controller 0, 99.0.0.1 on controller 1\n"
     "all well: 2 controllers, 4 drives, 1 logical drive\n",
     "SATARAID OK: all well: 2 controllers, 4 drives, 1 logical drive | critical=0;;;0 warning=0;;;0 "
     "unknown=0;;;0 controllers=2;;;0 drives=4;;;0 logical_drives=1;;;0 lost_members=0;;;0 "
     "c0_battery_temperature=30.0;@45:;@60:"},
    {"e2e/worlds/drives_and_boxes.json", 2,
     "controller 0: 5 drives, 2 logical drives, 6 enclosures, battery discharging\n"
     "controller 1: 1 drive, 0 logical drives, 0 enclosures, no battery\n"
     "critical: logical drive 1 Short of one of controller 0: critical: no redundancy is left (RAID1)\n"
     "warning: drive 10 of controller 0: lost by logical drive 1 Short of one; it is no longer listed\n"
     "warning: logical drive 1 Short of one of controller 0: no replacement is coming: automatic rebuild is "
     "off\n"
     "warning: drive 6 of controller 0: media patrol found 7 errors; channel 15, enclosure 2, serial A "
     "serial of 23 letters.\n"
     "warning: battery of controller 0: is discharging\n"
     "warning: logical drive 0 Whole of controller 0: set to write back, but the battery is discharging\n"
     "warning: logical drive 1 Short of one of controller 0: set to write back, but the battery is "
     "discharging\n"
     "7 problems, 1 of them critical\n",
     "SATARAID CRITICAL: 7 problems, 1 of them critical | critical=1;;;0 warning=6;;;0 unknown=0;;;0 "
     "controllers=2;;;0 drives=6;;;0 logical_drives=2;;;0 lost_members=1;;;0 "
     "c0_battery_temperature=40.1;@45:;@60: c0_e0_temperature=36;@50:;@60: c0_e1_temperature=40;@50:;@60:"},
    {"e2e/worlds/eight_drives.json", 0,
     "controller 0: 8 drives, 0 logical drives, 0 enclosures, no battery\n"
     "all well: 1 controller, 8 drives, 0 logical drives\n",
     "SATARAID OK: all well: 1 controller, 8 drives, 0 logical drives | critical=0;;;0 warning=0;;;0 "
     "unknown=0;;;0 controllers=1;;;0 drives=8;;;0 logical_drives=0;;;0 lost_members=0;;;0"},
    {"e2e/worlds/every_level.json", 1,
     "controller 0: 8 drives, 3 logical drives, 0 enclosures, no battery\n"
     "controller 1: 4 drives, 3 logical drives, 0 enclosures, no battery\n"
     "warning: logical drive 1 Twin sets of controller 0: set to write back, but the controller has no "
     "battery\n"
     "warning: logical drive 0 Mirror  of two of controller 1: set to write back, but the controller has no "
     "battery\n"
     "warning: logical drive 1 Plain of controller 1: set to write back, but the controller has no battery\n"
     "info: logical drive 0 Vault of controller 0: has no spare\n"
     "info: logical drive 1 Twin sets of controller 0: has no spare\n"
     "info: logical drive 0 Mirror  of two of controller 1: has no spare\n"
     "info: logical drive 2 Five of controller 1: has no spare\n"
     "3 problems\n",
     "SATARAID WARNING: 3 problems | critical=0;;;0 warning=3;;;0 unknown=0;;;0 controllers=2;;;0 "
     "drives=12;;;0 logical_drives=6;;;0 lost_members=0;;;0"},
};

class StatusWorld : public testing::TestWithParam<WorldCase> {
protected:
    Session session;
    void SetUp() override {
        session.program = CLI_STATUS;
        session.setClock(0);
        session.useWorld(readFile(root + "/" + GetParam().world));
    }
    // The lines of the text between those of the controllers and the last one.
    static std::string findings() {
        std::istringstream text(GetParam().text);
        std::string all;
        for (std::string line; std::getline(text, line);)
            for (const char* severity : {"critical: ", "unknown: ", "warning: ", "info: "})
                all += line.starts_with(severity) ? line + "\n" : "";
        return all;
    }
    // What derive_output makes of the world's file and the findings.
    std::string derived(const std::string& format) const {
        writeFile(session.path("findings"), findings());
        const int status = shell("/usr/bin/python3 " + root + "/status/derive_output " + format + " " + root +
                                 "/" + GetParam().world + " " + session.path("findings") + " " + root +
                                 "/../docs/man/cli-status.8 >" + session.path("derived"));
        EXPECT_EQ(status, 0);
        return readFile(session.path("derived"));
    }
};

TEST_P(StatusWorld, Text) {
    EXPECT_EQ(session.run({}), (ProcessOutcome{GetParam().status, GetParam().text, ""}));
}

TEST_P(StatusWorld, Plugin) {
    EXPECT_EQ(session.run({"--plugin"}),
              (ProcessOutcome{GetParam().status, GetParam().plugin + std::string("\n") + findings(), ""}));
}

TEST_P(StatusWorld, JsonIsThatDerivedFromTheWorld) {
    EXPECT_EQ(session.run({"--json"}), (ProcessOutcome{GetParam().status, derived("json"), ""}));
}

TEST_P(StatusWorld, MetricsAreThoseDerivedFromTheWorld) {
    EXPECT_EQ(session.run({"--metrics"}), (ProcessOutcome{GetParam().status, derived("metrics"), ""}));
}

TEST_P(StatusWorld, VerboseTextIsThatDerivedFromTheWorld) {
    EXPECT_EQ(session.run({"-v"}),
              (ProcessOutcome{GetParam().status, expectedVerbose(session, derived("json")), ""}));
}

TEST_P(StatusWorld, PageIsThatDerivedFromTheWorld) {
    expectPage(&session, GetParam().status, derived("json"));
}

// The problems at first, then nothing.
TEST_P(StatusWorld, ChangesAreTheProblemsOnce) {
    std::string problems;
    std::istringstream text(findings());
    for (std::string line; std::getline(text, line);)
        problems += line.starts_with("info: ") ? "" : line + "\n";
    const std::string kept = session.path("kept");
    EXPECT_EQ(session.run({"--changes", kept}), (ProcessOutcome{GetParam().status, problems, ""}));
    EXPECT_EQ(readFile(kept), derived("json"));
    EXPECT_EQ(session.run({"--changes", kept}), (ProcessOutcome{GetParam().status, "", ""}));
}

static std::string nameOf(const std::string& path) {
    std::string name = fs::path(path).stem();
    std::replace(name.begin(), name.end(), '-', '_');
    return name;
}

INSTANTIATE_TEST_SUITE_P(Worlds, StatusWorld, testing::ValuesIn(worldCases),
                         [](const auto& each) { return nameOf(each.param.world); });

// Every world of the tests: a file's, a case's, and those that the library refuses.
static std::vector<std::string> allWorlds() {
    std::vector<std::string> worlds;
    for (const char* directory : {"simulator/worlds", "e2e/worlds"})
        for (const auto& entry : fs::directory_iterator(root + "/" + directory))
            if (entry.path().extension() == ".json")
                worlds.push_back(readFile(entry.path()));
    const Json healthy = Json::parse(readFile(root + "/status/healthy.world.json"));
    for (const auto& entry : fs::directory_iterator(root + "/status/cases"))
        worlds.push_back(healthy.patch(Json::parse(readFile(entry.path()))["world"]).dump());
    return worlds;
}

// Writes the output in one format over every world to files of a session. Returns the files.
static std::vector<std::string> writeOutputs(Session* session, const std::string& option) {
    std::vector<std::string> files;
    session->program = CLI_STATUS;
    for (const std::string& world : allWorlds()) {
        session->useWorld(world);
        files.push_back(session->path("output" + std::to_string(files.size())));
        writeFile(files.back(), session->run({option}).out);
    }
    return files;
}

TEST(StatusOutputs, SatisfyTheSchemaOverEveryWorld) {
    Session session;
    std::vector<std::string> files = writeOutputs(&session, "--json");
    EXPECT_GT(files.size(), 40u);
    for (const std::string& world : allWorlds()) { // the file of --changes as well
        session.useWorld(world);
        files.push_back(session.path("state" + std::to_string(files.size())));
        session.run({"--changes", files.back()});
    }
    std::string command =
        "/usr/bin/python3 " + root + "/status/check_json " + root + "/../docs/cli-status.schema.json";
    for (const std::string& file : files)
        command += " " + file;
    const int status = shell(command);
    if (status == 77 || status == 127)
        GTEST_SKIP() << "needs python3-jsonschema";
    EXPECT_EQ(status, 0);
}

TEST(StatusOutputs, SatisfyPromtoolOverEveryWorld) {
    if (shell("command -v promtool >/dev/null") != 0)
        GTEST_SKIP() << "needs promtool, of Debian's package prometheus";
    Session session;
    for (const std::string& file : writeOutputs(&session, "--metrics"))
        EXPECT_EQ(shell("promtool check metrics <" + file), 0) << readFile(file);
}

// A list that lacks objects is not all well.
static void expectIncomplete(const char* kind, const char* operation, int status, const std::string& text) {
    Session session;
    session.program = CLI_STATUS;
    session.setClock(0);
    Json world = Json::parse(readFile(root + "/status/healthy.world.json"));
    world["controllers"][0]["drives"][2]["smartFailure"] = true;
    world["rules"] = {{{"kind", kind}, {"operation", operation}}};
    session.useWorld(world.dump());
    EXPECT_EQ(session.run({}), (ProcessOutcome{status, text, ""})) << kind << " " << operation;
}

TEST(StatusOutputs, ReportListsThatLackObjects) {
    const std::string smart = "warning: drive 3 of controller 0: predicts its failure (SMART); channel 2, "
                              "enclosure 0, serial S0003\n";
    expectIncomplete("zero", "q5_getPhyDrvInfo", 3,
                     "controller 0: 0 drives, 1 logical drive, 1 enclosure, battery fully charged\n"
                     "unknown: controller 0: counts 3 drives, but lists 0\n"
                     "1 problem, unknown\n");
    expectIncomplete("short", "q5_getPhyDrvInfo", 3,
                     "controller 0: 2 drives, 1 logical drive, 1 enclosure, battery fully charged\n"
                     "unknown: controller 0: counts 3 drives, but lists 2\n"
                     "1 problem, unknown\n");
    for (const char* kind : {"short", "zero"})
        expectIncomplete(kind, "q5_getLogDrvInfo", 3,
                         "controller 0: 3 drives, 0 logical drives, 1 enclosure, battery fully charged\n"
                         "unknown: controller 0: counts 1 logical drive, but lists 0\n" +
                             smart + "2 problems, 1 of them unknown\n");
    expectIncomplete("zero", "q5_getControllerInfo", 3,
                     "controller 0: 3 drives, 1 logical drive, 1 enclosure, battery fully charged\n"
                     "unknown: controller 0: counts 0 drives, but lists 3\n"
                     "unknown: controller 0: counts 0 logical drives, but lists 1\n" +
                         smart + "3 problems, 2 of them unknown\n");
}

// No count is better than a wrong one.
TEST(StatusOutputs, NumberOfRefusedObjectsIsUnknown) {
    expectIncomplete("refuse", "q5_getPhyDrvInfo", 3,
                     "controller 0: drives unknown, 1 logical drive, 1 enclosure, battery fully charged\n"
                     "unknown: controller 0: q5_getPhyDrvInfo failed with result 1\n"
                     "1 problem, unknown\n");
    const std::string smart = "warning: drive 3 of controller 0: predicts its failure (SMART); channel 2, "
                              "enclosure 0, serial S0003\n";
    expectIncomplete("refuse", "q5_getLogDrvInfo", 3,
                     "controller 0: 3 drives, logical drives unknown, 1 enclosure, battery fully charged\n"
                     "unknown: controller 0: q5_getLogDrvInfo failed with result 1\n" +
                         smart + "2 problems, 1 of them unknown\n");
    expectIncomplete("refuse", "q5_getEnclosureInfo", 3,
                     "controller 0: 3 drives, 1 logical drive, enclosures unknown, battery fully charged\n"
                     "unknown: controller 0: q5_getEnclosureInfo failed with result 1, and 15 more faults\n" +
                         smart + "2 problems, 1 of them unknown\n");
}

TEST(StatusOutputs, AreValidWhereTheLibraryCannotBeOpened) {
    Session session;
    session.program = CLI_STATUS;
    session.useWorld("{");
    const ProcessOutcome text = session.run({});
    EXPECT_EQ(text.status, 3);
    EXPECT_EQ(text.out, "unknown: this host: q5_initialize failed with result 1\n1 problem, unknown\n");
    EXPECT_NE(text.err, ""); // the library says what is wrong with the world
}
