// cli-backup over simulated worlds: its files, output and errors. What it keeps and removes is tested in
// retention_e2e_test.cpp, the export that it runs in export_e2e_test.cpp.
#include "tests/backup/backup_fixture.h"

#include <nlohmann/json.hpp>

using Backup = BackupSession;

static std::string lastLine(const std::string& text) {
    const std::size_t end = text.find_last_not_of('\n');
    const std::size_t start = text.rfind('\n', end);
    return text.substr(start == std::string::npos ? 0 : start + 1);
}

TEST_F(Backup, SavesWhatExportAndStatusReport) {
    const ProcessOutcome outcome = backup();
    ASSERT_EQ(stems().size(), 1u);
    EXPECT_EQ(outcome.status, 0) << outcome;
    EXPECT_EQ(lastLine(outcome.out), "saved as " + newest() + ".cfg\n");
    ASSERT_EQ(cli({"export", "-t", "1 2 3", "-f", "all.cfg"}).status, 0);
    EXPECT_EQ(content(newest() + ".cfg"), content("all.cfg"));
    EXPECT_EQ(content(newest() + ".json"), runOther(CLI_STATUS, {"--json"}).out);
    EXPECT_EQ(files().size(), 2u);
    EXPECT_TRUE(std::filesystem::is_empty(kept + "/.cli-backup"));
}

TEST_F(Backup, NamesContainHostAndTime) {
    char host[256] = {};
    ASSERT_EQ(gethostname(host, sizeof host - 1), 0);
    backup();
    const std::string name = newest().substr(5);
    const std::string prefix = std::string(host) + "-";
    ASSERT_EQ(name.size(), prefix.size() + 16);
    EXPECT_EQ(name.substr(0, prefix.size()), prefix);
    for (std::size_t i = 0; i < 15; ++i)
        EXPECT_TRUE(i == 8 ? name[prefix.size() + i] == 'T' : std::isdigit(name[prefix.size() + i])) << name;
    EXPECT_EQ(name.back(), 'Z');
}

TEST_F(Backup, CreatesNoFileWhenNothingChanged) {
    backup();
    const Files before = files();
    EXPECT_EQ(backup(), (ProcessOutcome{0, "unchanged since " + newest() + ".cfg\n", ""}));
    EXPECT_EQ(files(), before);
}

TEST_F(Backup, PrintsChangedSettings) {
    changeRate(50);
    backup();
    changeRate(77);
    const ProcessOutcome outcome = backup();
    EXPECT_EQ(outcome, (ProcessOutcome{0,
                                       "info: controller 0: SyncRate was 50; it is 77\n"
                                       "saved as " +
                                           newest() + ".cfg\n",
                                       ""}));
    EXPECT_EQ(stems().size(), 2u);
}

// An export does not hold extents.
TEST_F(Backup, PrintsChangedExtents) {
    useHealthyWorld();
    backup();
    removeSpare();
    const ProcessOutcome outcome = backup();
    EXPECT_NE(outcome.out.find("info: drive 3 of controller 0: its extents have changed\n"),
              std::string::npos)
        << outcome;
    EXPECT_EQ(stems().size(), 2u);
}

// A controller with 18 drives: one listing, and thus an export, ends after 16.
TEST_F(Backup, PrintsChangedSettingsOfDrivesThatAreNotExported) {
    std::string drives;
    for (int id = 0; id < 18; ++id)
        drives += (id == 0 ? "" : ", ") + ("{\"id\": " + std::to_string(id) + ", \"sectors\": 4194304}");
    session.useWorld("{\"controllers\": [{\"drives\": [" + drives + "]}]}");
    ASSERT_EQ(cli({"phydrv", "-a", "mod", "-p", "18", "-i", "0", "-s", "writecache=enable"}).status, 0);
    ASSERT_EQ(backup().status, 0);
    ASSERT_EQ(cli({"phydrv", "-a", "mod", "-p", "18", "-i", "0", "-s", "writecache=disable"}).status, 0);
    const ProcessOutcome outcome = backup();
    EXPECT_EQ(outcome,
              (ProcessOutcome{0,
                              "info: drive 18 of controller 0: WriteCache was Enable; it is Disable\n"
                              "saved as " +
                                  newest() + ".cfg\n",
                              ""}));
    EXPECT_EQ(stems().size(), 2u);
}

// What no other line describes is shown by its place in the snapshot.
TEST_F(Backup, PrintsOtherChangedValues) {
    backup();
    ASSERT_EQ(
        runOther("/bin/sed", {"-i", "0,/\"capacity\": [0-9]*/s//\"capacity\": 12345/", newest() + ".json"})
            .status,
        0);
    const ProcessOutcome outcome = backup();
    EXPECT_EQ(outcome.status, 0) << outcome;
    EXPECT_NE(outcome.out.find("info: snapshot: /controllers/0/drives/0/info/capacity was 12345; it is "),
              std::string::npos)
        << outcome;
    EXPECT_EQ(stems().size(), 2u);
}

TEST_F(Backup, IgnoresChangesOfProgressAndReadings) {
    useHealthyWorld();
    ASSERT_EQ(cli({"mp", "-a", "start", "-p", "1", "-i", "0"}).status, 0);
    backup();
    for (const char* change :
         {"s/\\(\"reading\": [0-9]*\\)[0-9]/\\11/", "s/\"progress\": [0-9]*/\"progress\": 7/",
          "s/\"percent\": [0-9]*/\"percent\": 7/", "s/\"voltage\": [0-9]*/\"voltage\": 7/"})
        ASSERT_EQ(runOther("/bin/sed", {"-i", change, newest() + ".json"}).status, 0);
    const ProcessOutcome outcome = backup();
    EXPECT_NE(outcome.out.find("unchanged since "), std::string::npos) << outcome;
}

// Two in one second, or a clock that was set back: the order of the names remains that of the backups.
TEST_F(Backup, IsNamedAfterTheNewestBackup) {
    backup();
    const std::string saved = newest(), host = saved.substr(0, saved.size() - 16);
    for (const char* suffix : {".cfg", ".json"})
        std::filesystem::rename(session.path(saved + suffix),
                                session.path(host + "29991231T235959Z" + suffix));
    changeRate(77);
    backup();
    EXPECT_EQ(newest(), host + "30000101T000000Z");
}

// Such names are not those of backups: they are not compared with, not continued, and never removed, not even
// a .json alone.
TEST_F(Backup, LeavesNamesThatAreNoTimesAlone) {
    backup();
    const std::string saved = newest(), host = saved.substr(0, saved.size() - 16);
    const std::string text = content(saved + ".cfg");
    Files others;
    for (const char* time : {"20261301T000000Z", "20260230T000000Z", "20260229T000000Z", "20261122T240000Z",
                             "20261122T006000Z", "20261122T000060Z", "19691231T235959Z", "00000101T000000Z",
                             "99990101T000000Z", "99991231T235959Z"}) {
        const std::string name = std::filesystem::path(host + time).filename().string();
        others[name + ".json"] = "{}";
        if (std::string(time) >= "20261122T006000Z")
            others[name + ".cfg"] = text;
    }
    for (const auto& [name, other] : others)
        writeFile(kept + "/" + name, other);
    EXPECT_EQ(backup().out, "unchanged since " + saved + ".cfg\n");
    for (const int rate : {77, 78, 79}) {
        changeRate(rate);
        const ProcessOutcome outcome = backup({"--keep", "1"});
        EXPECT_EQ(outcome.status, 0) << outcome;
        EXPECT_EQ(outcome.out.find("saved as " + host + "2"), outcome.out.find("saved as ")) << outcome;
    }
    Files now = files();
    EXPECT_EQ(now.size(), others.size() + 2);
    for (const auto& [name, other] : others)
        EXPECT_EQ(now[name], other) << name;
}

// A leap day is a day.
TEST_F(Backup, CountsAFarTimeAsTheNewest) {
    backup();
    const std::string saved = newest(), host = saved.substr(0, saved.size() - 16);
    for (const char* suffix : {".cfg", ".json"})
        std::filesystem::rename(session.path(saved + suffix),
                                session.path(host + "96000228T235959Z" + suffix));
    EXPECT_EQ(backup().out, "unchanged since " + host + "96000228T235959Z.cfg\n");
    changeRate(77);
    EXPECT_EQ(backup({"--keep", "1"}).status, 0);
    EXPECT_EQ(stems(), (std::vector<std::string>{host + "96000229T000000Z"}));
}

TEST_F(Backup, RefusesToFollowTheLastName) {
    backup();
    const std::string saved = newest(), last = saved.substr(0, saved.size() - 16) + "99981231T235959Z";
    for (const char* suffix : {".cfg", ".json"})
        std::filesystem::rename(session.path(saved + suffix), session.path(last + suffix));
    const Files before = files();
    EXPECT_EQ(backup().status, 0); // unchanged
    changeRate(77);
    const ProcessOutcome outcome = backup();
    EXPECT_EQ(outcome.status, 3) << outcome;
    EXPECT_EQ(outcome.err,
              "cli-backup: no backup can follow " + last + ".cfg: rename or remove it and its .json\n");
    EXPECT_EQ(files(), before);
}

// The next name is known: one second after the newest.
TEST_F(Backup, AddsNothingNextToAForeignFile) {
    backup();
    const std::string saved = newest(), host = saved.substr(0, saved.size() - 16);
    for (const char* suffix : {".cfg", ".json"})
        std::filesystem::rename(session.path(saved + suffix),
                                session.path(host + "29991231T235959Z" + suffix));
    writeFile(session.path(host + "30000101T000000Z.cfg"), "foreign");
    const Files before = files();
    changeRate(77);
    const ProcessOutcome outcome = backup();
    EXPECT_EQ(outcome.status, 3) << outcome;
    EXPECT_EQ(outcome.err, "cli-backup: cannot write " + host + "30000101T000000Z.cfg: it exists\n");
    EXPECT_EQ(files(), before);
}

TEST_F(Backup, NeedsItsDirectory) {
    EXPECT_EQ(session.run({"-d", "none", "--cli", E2E_REHEARSAL}),
              (ProcessOutcome{3, "", "cli-backup: cannot use none: No such file or directory\n"}));
    writeFile(session.path("file"), "");
    EXPECT_EQ(session.run({"-d", "file", "--cli", E2E_REHEARSAL}),
              (ProcessOutcome{3, "", "cli-backup: cannot create file/.cli-backup: Not a directory\n"}));
}

// Deleting what a link leads to would be worse than no backup.
TEST_F(Backup, RefusesALinkAsWorkDirectory) {
    std::filesystem::create_directory(session.path("precious"));
    writeFile(session.path("precious/file"), "x");
    std::filesystem::create_directory_symlink("../precious", kept + "/.cli-backup");
    EXPECT_EQ(backup(), (ProcessOutcome{3, "", "cli-backup: kept/.cli-backup is not a directory\n"}));
    EXPECT_EQ(content("precious/file"), "x");
}

// Another user than the one who made the backups. No other run is to blame.
TEST_F(Backup, ReportsMissingPermission) {
    namespace fs = std::filesystem;
    ASSERT_EQ(backup().status, 0);
    for (const std::string& file : {std::string(CLI_BACKUP), std::string(PROGRAMS "/../lib/libzvq5plugin.so"),
                                    std::string(PROGRAMS "/../lib/libzverrlog.so")})
        fs::copy_file(file, session.path(fs::path(file).filename().string()));
    fs::permissions(session.path("cli-backup"), fs::perms(0755));
    for (const std::string& directory : {session.directory, kept})
        fs::permissions(directory, fs::perms(0755));
    fs::permissions(kept + "/.cli-backup", fs::perms::none);
    session.program = session.path("cli-backup");
    session.preferLibraries(session.directory);
    session.unprivileged = true;
    EXPECT_EQ(session.run({"-d", "kept", "--cli", "cli-backup"}),
              (ProcessOutcome{3, "", "cli-backup: cannot use kept/.cli-backup: Permission denied\n"}));
    fs::permissions(kept + "/.cli-backup", fs::perms(0700));
}

TEST_F(Backup, NeedsControllers) {
    backup();
    const Files before = files();
    session.useWorld("{\"controllers\": []}");
    const ProcessOutcome outcome = backup();
    EXPECT_EQ(outcome.status, 3) << outcome;
    EXPECT_EQ(files(), before);
}

// The size of logical drives is in both files; that of a drive is in the snapshot alone.
TEST_F(Backup, AChangedValueIsNoLongerWhatWasSaved) {
    const char* const changes[] = {"s/\"sectorCount\": [0-9]*/\"sectorCount\": 12345/",
                                   "s/\"capacity\": [0-9]*/\"capacity\": 12345/",
                                   "s/\"syncRate\": [0-9]*/\"syncRate\": 1/"};
    for (const char* change : changes) {
        removeBackups();
        backup();
        ASSERT_EQ(runOther("/bin/sed", {"-i", change, newest() + ".json"}).status, 0);
        const ProcessOutcome outcome = backup();
        EXPECT_EQ(outcome.out.find("unchanged"), std::string::npos) << change << outcome;
        EXPECT_EQ(stems().size(), 2u) << change;
    }
}

TEST_F(Backup, ReportsAFullOrClosedStandardOutput) {
    for (const char* redirection : {">/dev/full", ">&-"}) {
        removeBackups();
        const std::string command = "exec \"$0\" \"$@\" " + std::string(redirection);
        const ProcessOutcome outcome =
            runOther("/bin/sh", {"-c", command, CLI_BACKUP, "-d", "kept", "--cli", E2E_REHEARSAL});
        EXPECT_EQ(outcome, (ProcessOutcome{1, "", "cli-backup: cannot write to standard output\n"}));
        EXPECT_EQ(files().size(), 2u);
        EXPECT_EQ(backup(), (ProcessOutcome{0, "unchanged since " + newest() + ".cfg\n", ""}));
    }
}

TEST_F(Backup, RefusesWrongCommandLines) {
    const std::string advice = "Try \"cli-backup --help\".\n";
    EXPECT_EQ(session.run({"word"}),
              (ProcessOutcome{2, "", "cli-backup: unexpected word \"word\"\n" + advice}));
    EXPECT_EQ(session.run({"-d", ""}),
              (ProcessOutcome{2, "", "cli-backup: --directory needs a name\n" + advice}));
    for (const char* number : {"0", "-1", "x", "", "100001", "1x"})
        EXPECT_EQ(session.run({"--keep", number}),
                  (ProcessOutcome{2, "",
                                  std::string("cli-backup: \"") + number +
                                      "\" is not a number of backups from 1 to 100000\n" + advice}));
    EXPECT_EQ(session.run({"--version"}), (ProcessOutcome{0, "cli-backup " CLI_STATUS_VERSION "\n", ""}));
    EXPECT_EQ(session.run({"--none"}).status, 2);
}

// Every world that a test has: world files, and cases that say how they differ from the healthy world.
static std::string worldOf(const std::filesystem::path& path) {
    const std::string text = readFile(path.string());
    if (path.parent_path().filename() != "cases")
        return text;
    const auto healthy = nlohmann::ordered_json::parse(readFile(STATUS_SOURCES "/healthy.world.json"));
    return healthy.patch(nlohmann::ordered_json::parse(text)["world"]).dump();
}

TEST_F(Backup, SavesEveryWorld) {
    int worlds = 0;
    for (const char* directory : {"/e2e/worlds", "/simulator/worlds", "/status/cases"})
        for (const auto& entry : std::filesystem::directory_iterator(STATUS_ROOT + std::string(directory))) {
            const std::string name = entry.path().filename().string();
            if (entry.path().extension() != ".json" || name.rfind("invalid-", 0) == 0 || name == "empty.json")
                continue;
            SCOPED_TRACE(name);
            session.useWorld(worldOf(entry.path()));
            removeBackups();
            const ProcessOutcome first = backup();
            EXPECT_EQ(first.status, 0) << first;
            EXPECT_EQ(files().size(), 2u);
            EXPECT_EQ(backup().status, first.status);
            EXPECT_EQ(files().size(), 2u);
            ++worlds;
        }
    EXPECT_GE(worlds, 30);
}
