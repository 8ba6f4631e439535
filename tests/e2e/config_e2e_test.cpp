// Export and import as an administrator uses them: saving, displaying and restoring a configuration, and
// recreating the logical drives after a loss. The world every_level has no automatic write back,
// which a file cannot represent.
#include <gtest/gtest.h>

#include "tests/e2e/every_level_file.h"
#include "tests/e2e/harness.h"

// The text that an export of these types writes.
static std::string exported(Session* s, const std::string& types = "0") {
    EXPECT_EQ(s->run({"export", "-t", types, "-f", "now.cfg"}), kSilentSuccess);
    return readFile(s->path("now.cfg"));
}

static void useEveryLevel(Session* s) {
    s->useWorld(fixtureWorld("every_level"));
}

static void exportAll(Session* s) {
    EXPECT_EQ(s->run({"export", "-t", "0", "-f", "all.cfg"}), kSilentSuccess);
    ASSERT_EQ(readFile(s->path("all.cfg")), wholeFile());
}

TEST(ConfigE2e, ExportWritesTheWholeSystem) {
    Session s;
    useEveryLevel(&s);
    exportAll(&s);
}

TEST(ConfigE2e, ExportWritesRequestedTypes) {
    Session s;
    useEveryLevel(&s);
    EXPECT_EQ(exported(&s, "3 1"), logicalDriveBlocks() + kControllers[0] + kControllers[1]);
    EXPECT_EQ(exported(&s, "2"), driveBlocks());
    EXPECT_EQ(exported(&s, "9"), "");
    EXPECT_EQ(s.prompt("export -f typed.cfg -t \"1 1\"\nexit\n").status, 0);
    EXPECT_EQ(readFile(s.path("typed.cfg")),
              kControllers[0] + kControllers[1] + kControllers[0] + kControllers[1]);
}

TEST(ConfigE2e, ExportChangesNothing) {
    Session s;
    useEveryLevel(&s);
    exported(&s);
    const std::string before = s.worldText();
    exported(&s);
    EXPECT_EQ(s.worldText(), before);
}

TEST(ConfigE2e, ExportReportsFailure) {
    Session s;
    useEveryLevel(&s);
    EXPECT_EQ(s.run({"export", "-t", "0", "-f", "none/all.cfg"}),
              (ProcessOutcome{
                  12, "Unable to create or open the specified configuration file \"none/all.cfg\"\n", ""}));
    EXPECT_EQ(s.run({"export", "-t", "0", "-t", "0"}),
              (ProcessOutcome{12, "Unable to create or open the specified configuration file \"\"\n", ""}));
    EXPECT_EQ(s.run({"export", "-t", "0", "-f", "/dev/full"}),
              (ProcessOutcome{12, "Unable to create or open the specified configuration file \"/dev/full\"\n",
                              ""}));
}

// Displaying a file changes neither the file nor the next export.
TEST(ConfigE2e, DisplayChangesNothing) {
    Session s;
    useEveryLevel(&s);
    exportAll(&s);
    const std::string before = s.worldText();
    const ProcessOutcome shown = s.run({"import", "-i", "-c", "-f", "all.cfg"});
    EXPECT_EQ(shown.status, 0);
    const std::string line = std::string(59, '-') + "\n";
    EXPECT_EQ(shown.out.find(line +
                             "<<Controller setting #0>>\nAuto Rebuild : Enable\nSmart Check : Disable\n"
                             "Synchronization rate : 12\n"),
              0u)
        << shown.out;
    EXPECT_NE(shown.out.find("Buzzer : Off\nNumber of extent with Global Spare setting : 8\n" + line + line),
              std::string::npos);
    EXPECT_NE(shown.out.find("<<Logical drive setting #0>>\nName :  Vault\nSize : 1572.8640 MB\n"
                             "Stripe size : 64 KB\nSector size : 512 Byte\nRaid mode : RAIDMF\n"
                             "Write cache mode : Write Through\nDisk number : 5\n"
                             "Disk member ID list : 1 2 3 4 5 \n"
                             "Extent member Index list corresponding to Disk member ID list : 0 0 0 0 0 \n"
                             "Initialization mode : None Initialization\nLookahead value : 3\n"
                             "Consolidataion : Disable\nParityCount : 2\nSymmetric : 1\nShift : -3\n" +
                             line),
              std::string::npos)
        << shown.out;
    EXPECT_EQ(s.worldText(), before);
    EXPECT_EQ(exported(&s), wholeFile());
}

static void changeLogicalDrive(Session* s, int controller, int drive, const std::string& settings) {
    EXPECT_EQ(s->run({"logdrv", "-a", "mod", "-i", std::to_string(controller), "-l", std::to_string(drive),
                      "-s", settings}),
              kSilentSuccess);
}

// Changes everything that commands can change except the buzzers.
static void changeEverything(Session* s) {
    EXPECT_EQ(
        s->run({"ctrl", "-a", "mod", "-i", "0", "-s",
                "smart=enable,autorebuild=disable,smartpoll=1,encpoll=2,rebuildrate=3,syncrate=4,initrate=5,"
                "migraterate=6,mprate=7,rebuildpolicy=disable"}),
        kSilentSuccess);
    EXPECT_EQ(
        s->run({"ctrl", "-a", "mod", "-i", "1", "-s",
                "smart=disable,autorebuild=enable,smartpoll=255,encpoll=254,rebuildrate=253,syncrate=252,"
                "initrate=251,migraterate=250,mprate=249,rebuildpolicy=enable"}),
        kSilentSuccess);
    const auto changeDrive = [&](const char* controller, const std::string& drive,
                                 const std::string& settings) {
        EXPECT_EQ(s->run({"phydrv", "-a", "mod", "-p", drive, "-i", controller, "-s", settings}),
                  kSilentSuccess);
    };
    changeDrive("0", "1", "writecache=enable,tcq=disable");
    changeDrive("0", "2", "writecache=disable,ncq=disable");
    changeDrive("0", "3", "writecache=disable,tcq=enable,ncq=enable");
    for (int drive = 4; drive <= 8; ++drive)
        changeDrive("0", std::to_string(drive), "writecache=disable");
    for (int drive = 1; drive <= 4; ++drive)
        changeDrive("1", std::to_string(drive), "writecache=disable");
    for (int drive : {0, 1})
        for (int controller : {0, 1})
            changeLogicalDrive(
                s, controller, drive,
                "writepolicy=auto,lookahead=1,name=Other " + std::to_string(drive) +
                    (drive == 0 && controller == 0 ? ",consolidation=enable" : ",consolidation=disable"));
    changeLogicalDrive(s, 0, 2, "writepolicy=writeback,lookahead=1,name=Other 2,consolidation=enable");
    changeLogicalDrive(s, 1, 2, "writepolicy=writeback,lookahead=1,name=Other 2,consolidation=enable");
}

TEST(ConfigE2e, ImportRestoresAllSettings) {
    Session s;
    useEveryLevel(&s);
    exportAll(&s);
    changeEverything(&s);
    const std::string changed = exported(&s);
    EXPECT_EQ(
        changed.find("<BuzzerEnable> On\n<GlobalSpare> 8\n[End] \n[CrtlSetIndex] 1\n<AutoRebuild> Enable\n"
                     "<SyncRate> 252\n<InitRate> 251\n<MPRate> 249\n<MigrateRate> 250\n<RebuildRate> 253\n"
                     "<SmartCEnable> Disable\n<SmartPollInt> 255\n<EncPollInt> 254\n<RebuildPolicy> 1\n"),
        changed.find("<BuzzerEnable>"));
    for (const std::string& gone : {std::string("<SyncRate> 12"), std::string("Vault"), std::string("Mirror"),
                                    driveBlock(0, 0, 1, "Disable", "Enable"), driveBlock(11, 1, 4)})
        EXPECT_EQ(changed.find(gone), std::string::npos) << gone;
    EXPECT_EQ(s.run({"import", "-f", "all.cfg"}), kSilentSuccess);
    EXPECT_EQ(exported(&s), wholeFile());
}

TEST(ConfigE2e, ImportKeepsBuzzersAndSpares) {
    Session s;
    useEveryLevel(&s);
    exportAll(&s);
    EXPECT_EQ(s.run({"buzz", "-a", "disable", "-i", "0"}).status, 0);
    EXPECT_EQ(s.run({"extent", "-a", "free", "-i", "0", "-p", "1", "-e", "2"}).status, 0);
    EXPECT_EQ(s.run({"import", "-a", "-f", "all.cfg"}), kSilentSuccess);
    EXPECT_EQ(exported(&s), replaced(wholeFile(), "<BuzzerEnable> On\n<GlobalSpare> 8",
                                     "<BuzzerEnable> Off\n<GlobalSpare> 0"));
}

TEST(ConfigE2e, ImportAppliesSelectedBlocks) {
    Session s;
    useEveryLevel(&s);
    exportAll(&s);
    changeEverything(&s);
    const std::string changed = exported(&s);
    const std::string first = changed.substr(0, changed.find("[CrtlSetIndex] 1"));
    EXPECT_EQ(s.run({"import", "-k", "0", "-f", "all.cfg"}), kSilentSuccess);
    const std::string controllerBack = replaced(changed, first, kControllers[0]);
    EXPECT_EQ(exported(&s), controllerBack);

    // The third drive block of the file, and the fourth logical drive.
    EXPECT_EQ(s.run({"import", "-p", "3", "-l", "3", "-f", "all.cfg"}), kSilentSuccess);
    const std::string driveBack = replaced(controllerBack, driveBlock(2, 0, 3, "Disable", "Enable", "Enable"),
                                           driveBlock(2, 0, 3, "Enable", "Disable", "Disable"));
    const auto third = [](const std::string& text) {
        const std::size_t at = text.find("[LogDrvSetIndex] 3");
        return text.substr(at, text.find("[LogDrvSetIndex] 4") - at);
    };
    EXPECT_EQ(exported(&s), replaced(driveBack, third(driveBack), third(wholeFile())));
}

TEST(ConfigE2e, ImportRecreatesLogicalDrives) {
    Session s;
    useEveryLevel(&s);
    exportAll(&s);
    for (const char* array : {"0", "1", "2"})
        EXPECT_EQ(s.run({"logdrv", "-a", "del", "-i", "0", "-l", array}), kSilentSuccess);
    for (const char* array : {"7", "1", "2"})
        EXPECT_EQ(s.run({"logdrv", "-a", "del", "-i", "1", "-l", array}), kSilentSuccess);
    EXPECT_EQ(exported(&s, "3"), "");
    EXPECT_EQ(s.run({"import", "-f", "all.cfg"}), kSilentSuccess); // creates nothing
    EXPECT_EQ(exported(&s, "3"), "");
    EXPECT_EQ(s.run({"import", "-c", "-f", "all.cfg"}), kSilentSuccess);
    EXPECT_EQ(exported(&s), wholeFile());
}

TEST(ConfigE2e, ImportReplacesExistingLogicalDrives) {
    Session s;
    useEveryLevel(&s);
    exportAll(&s);
    changeEverything(&s);
    EXPECT_EQ(s.run({"logdrv", "-a", "del", "-i", "0", "-l", "2"}), kSilentSuccess);
    EXPECT_EQ(
        s.run({"logdrv", "-a", "add", "-i", "0", "-p", "7", "-z", "name=In the way,raid=raid0,capacity=2"}),
        kSilentSuccess);
    EXPECT_EQ(s.run({"import", "-c", "-f", "all.cfg"}), kSilentSuccess);
    // The conflicting extent is split off the first one; nothing else differs.
    EXPECT_EQ(exported(&s, "1 2"), kControllers[0] + kControllers[1] + driveBlocks());
    const std::string blocks = exported(&s, "3");
    EXPECT_EQ(blocks.find("In the way"), std::string::npos);
    EXPECT_EQ(replaced(blocks, "(2,0)", "(0,0)"), logicalDriveBlocks());
}

TEST(ConfigE2e, ImportToSmallerSystemFailsBeforeAnyChange) {
    Session s;
    useEveryLevel(&s);
    exportAll(&s);
    s.useWorld(R"({"controllers": [{"drives": [
        {"id": 0, "sectors": 2048000, "extents": [{"start": 0, "size": 2048000}]}]}]}
)");
    exported(&s);
    const std::string before = s.worldText();
    const struct {
        std::vector<std::string> words;
        ProcessOutcome outcome;
    } cases[] = {
        {{"import", "-c", "-f", "all.cfg"},
         {5, "The number of controller in the system is less than the number of controller specified!\n",
          ""}},
        {{"import", "-p", "1,2", "-f", "all.cfg"},
         {16, "The physical drive number specified is greater than the one in the controller\n", ""}},
        {{"import", "-l", "2", "-c", "-f", "all.cfg"},
         {16,
          "The physical drive member number in logical drive specified is greater than the one in the "
          "controller\n",
          ""}},
    };
    for (const auto& [words, outcome] : cases)
        EXPECT_EQ(s.run(words), outcome);
    EXPECT_EQ(s.worldText(), before);
}

TEST(ConfigE2e, ImportOfInvalidFileFailsBeforeAnyChange) {
    Session s;
    useEveryLevel(&s);
    exported(&s);
    const std::string before = s.worldText();
    writeFile(s.path("empty.cfg"), "");
    writeFile(s.path("bad.cfg"), "[CrtlSetIndex] 0\n<SyncRate> 99\n[End]\n-----\n");
    std::string many;
    for (int i = 0; i < 65; ++i)
        many += "[PhyDrvSetIndex] 0\n[End]\n";
    writeFile(s.path("many.cfg"), many);
    EXPECT_EQ(s.run({"import", "-f", "none.cfg"}),
              (ProcessOutcome{12, "Unable to open the specified configuration file \"none.cfg\"!!\n", ""}));
    EXPECT_EQ(s.run({"import", "-a", "-c"}),
              (ProcessOutcome{12, "Unable to open the specified configuration file \"\"!!\n", ""}));
    EXPECT_EQ(s.run({"import", "-f", "empty.cfg"}), (ProcessOutcome{14, "", ""}));
    EXPECT_EQ(s.run({"import", "-f", "bad.cfg"}),
              (ProcessOutcome{13, "Invalid keyword in the configuration file!\n", ""}));
    EXPECT_EQ(s.run({"import", "-f", "many.cfg", "-c"}),
              (ProcessOutcome{
                  16, "The configuration file holds more settings than can be imported at once!\n", ""}));
    EXPECT_EQ(s.run({"import", "-f", "empty.cfg", "-x"}),
              (ProcessOutcome{1, "Invalid parameters defined\n", ""}));
    EXPECT_EQ(s.run({"import", "-i", "-f", "empty.cfg"}), kSilentSuccess);
    EXPECT_EQ(s.worldText(), before);
}

// Both automatic modes are read as plain automatic, which is shown as "Auto - Write Through".
TEST(ConfigE2e, AutomaticWriteBackIsRestoredAsAutomatic) {
    Session s;
    s.useWorld(replaced(fixtureWorld("every_level"), "\"cacheFlags\": 8", "\"cacheFlags\": 9"));
    const std::string before = exported(&s);
    EXPECT_EQ(before, replaced(wholeFile(), "Auto - Write Through", "Auto - Write Back"));
    EXPECT_EQ(s.run({"import", "-f", "now.cfg"}), kSilentSuccess);
    EXPECT_EQ(exported(&s), wholeFile());
}

// An edited file can have the new drive initialized, but not in the foreground.
TEST(ConfigE2e, ImportHonorsEditedInitialization) {
    for (const std::string word : {"QUICK", "BACK", "FORE", "NONE"}) {
        Session s;
        useEveryLevel(&s);
        exportAll(&s);
        writeFile(s.path("all.cfg"), replaced(wholeFile(), "NONE", word));
        EXPECT_EQ(s.run({"import", "-c", "-l", "3", "-f", "all.cfg"}), kSilentSuccess);
        const std::string block = s.run({"logdrv", "-v", "-i", "1", "-l", "0"}).out;
        const bool initializes = word == "QUICK" || word == "BACK";
        EXPECT_EQ(block.find("Array activity status : Initializing") != std::string::npos, initializes)
            << word << "\n"
            << block;
        EXPECT_EQ(exported(&s, "3").find("<LogDrvInitMode> " + word) != std::string::npos, word == "NONE");
    }
}
