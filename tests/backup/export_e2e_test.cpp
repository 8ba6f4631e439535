// How cli-backup finds the program that exports, and when it accepts the exported file.
#include "tests/backup/backup_fixture.h"

using Backup = BackupSession;

TEST_F(Backup, NeedsAProgramThatExports) {
    EXPECT_EQ(session.run({"-d", "kept", "--cli", "none"}),
              (ProcessOutcome{3, "", "cli-backup: cannot find none\n"}));
    EXPECT_EQ(files(), Files());
}

TEST_F(Backup, FindsAProgramInItsDirectory) {
    EXPECT_EQ(session.run({"-d", "kept", "--cli", "cli-rehearse"}).status, 0);
    EXPECT_EQ(session.run({"-d", "kept", "--cli", "bin/cli-rehearse"}),
              (ProcessOutcome{3, "", "cli-backup: cannot find bin/cli-rehearse\n"}));
}

TEST_F(Backup, FindsCliInItsDirectory) {
    const std::string bin = session.path("bin");
    std::filesystem::create_directory(bin);
    std::filesystem::create_symlink(CLI_BACKUP, bin + "/cli-backup");
    std::filesystem::create_symlink(E2E_REHEARSAL, bin + "/cli");
    session.program = bin + "/cli-backup";
    EXPECT_EQ(session.run({"-d", "kept"}).status, 0);
    session.program = "/usr/bin/env";
    session.setVariable("PATH", bin + ":/usr/bin:/bin");
    EXPECT_EQ(session.run({"cli-backup", "--directory=kept"}).status, 0);
    EXPECT_EQ(stems().size(), 1u);
}

// Runs cli-backup with a shell script as cli.
static ProcessOutcome backupWithScript(Session& session, const std::string& script) {
    const std::string path = session.path("script");
    writeFile(path, "#!/bin/sh\n" + script + "\n");
    std::filesystem::permissions(path, std::filesystem::perms(0755));
    return session.run({"-d", "kept", "--cli", "script"});
}

TEST_F(Backup, ReportsAFailedExport) {
    EXPECT_EQ(backupWithScript(session, "echo first; echo No controller is existed; exit 4"),
              (ProcessOutcome{3, "",
                              "cli-backup: " + session.path("script") +
                                  " export failed with status 4: No controller is existed\n"}));
    EXPECT_EQ(files(), Files());
}

// One line of the file is another, one is missing, one is added, the last one is cut.
TEST_F(Backup, RefusesAnExportThatDiffersFromTheAdapters) {
    const std::string run = "\"" E2E_REHEARSAL "\" \"$@\" && ";
    const char* const changes[] = {"sed -i s/'<InitRate> .*/<InitRate> 1/' new.cfg", "sed -i 40d new.cfg",
                                   "echo '[CrtlSetIndex] 9' >>new.cfg", "truncate -s -1 new.cfg",
                                   ": >new.cfg"};
    for (const char* world : {"complete", "without the list of drives"}) {
        for (const char* change : changes) {
            const ProcessOutcome outcome = backupWithScript(session, run + change);
            EXPECT_EQ(outcome.status, 3) << change << world;
            EXPECT_NE(outcome.err.find("the exported file "), std::string::npos) << change << outcome;
            EXPECT_EQ(files(), Files()) << change << world;
        }
        ASSERT_EQ(q5sim({"refuse", "q5_getPhyDrvInfo"}).status, 0);
    }
}

// Only settings that are all zero may be missing.
TEST_F(Backup, RefusesAnExportWithoutTheSettingsOfDrives) {
    useHealthyWorld();
    EXPECT_EQ(backupWithScript(session, "\"" E2E_REHEARSAL
                                        "\" \"$@\" && sed -i '/^.PhyDrvSetIndex/,/^.End/d' new.cfg"),
              (ProcessOutcome{3, "",
                              "cli-backup: line 15 of the exported file is \"[LogDrvSetIndex] 0\"; the "
                              "adapters report \"[PhyDrvSetIndex] 0\"\n"}));
    EXPECT_EQ(files(), Files());
}

// What changes between the two readings is read again.
TEST_F(Backup, TriesAgainWhenTheAdaptersChangeMeanwhile) {
    const std::string cli = "\"" E2E_REHEARSAL "\" ";
    const ProcessOutcome outcome =
        backupWithScript(session, "[ -e ../../once ] || { : >../../once; " + cli +
                                      "ctrl -a mod -i 0 -s syncrate=99; }\n" + cli + "\"$@\"");
    EXPECT_EQ(outcome.status, 0) << outcome;
    EXPECT_NE(content(newest() + ".cfg").find("<SyncRate> 99\n"), std::string::npos);
}
