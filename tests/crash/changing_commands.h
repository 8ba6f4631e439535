// Every command that changes the adapters, and those that write a file: one for each action, or for each
// option that selects the function. The tests of the dispatcher compare this list with the commands' actions.
#pragma once

#include <string>
#include <vector>

struct ChangingCommand {
    std::vector<std::string> words;
    int changes = 1;          // how many calls that change an adapter it makes at most
    std::string prepare = ""; // a shell script that brings the built-in world into the state it needs
};

// Drive 7 is free, drive 6 a spare. Logical drive 1 has drives 4 and 5.
inline const std::string kMigration = "\"$CLI\" migrate -a start -l 1 -i 0 -p 7 -e 0 -s raid=raid5; ";
inline const std::string kLostMember = "\"$CLI\" ctrl -a mod -i 0 -s autorebuild=disable; "
                                       "\"$Q5SIM\" fail-drive 0 4; ";
inline const std::string kRebuild =
    kLostMember + "\"$CLI\" rb -a start -l 1 -i 0 -p 7 -e 0; \"$Q5SIM\" advance 10; ";
inline const std::string kCheck = "\"$CLI\" rc -a start -l 1 -i 0; ";
inline const std::string kInitialization = "\"$CLI\" init -a start -l 1 -i 0; ";
inline const std::string kPatrol = "\"$CLI\" mp -a start -p 1 -i 0; ";
inline const std::string kBackup =
    "\"$CLI\" export -t 0 -f all.cfg; \"$CLI\" ctrl -a mod -i 1 -s syncrate=78; "
    "\"$CLI\" phydrv -a mod -p 1 -i 0 -s writecache=disable; \"$CLI\" logdrv -a mod -i 0 -l 0 -s "
    "name=Other; ";

// An import of everything sets 2 controllers, 12 drives and 3 logical drives; with -c it also deletes and
// creates the logical drives.
inline const std::vector<ChangingCommand> changingCommands = {
    {{"buzz", "-a", "disable", "-i", "0"}},
    {{"buzz", "-a", "enable", "-i", "0"}, 1, "\"$CLI\" buzz -a disable -i 0"},
    {{"ctrl", "-a", "mod", "-i", "0", "-s", "syncrate=77"}},
    {{"enclosure", "-a", "locate", "-e", "0", "-i", "0", "-s", "30"}, 8}, // drive 1, once for each of 8
    {{"event", "-i", "1"}, 0},
    {{"export", "-t", "0", "-f", "all.cfg"}, 0},
    {{"export", "-f", "all.cfg", "-t", "0"}, 0},
    {{"extent", "-a", "spare", "-p", "7", "-e", "0", "-i", "0"}},
    {{"extent", "-a", "free", "-p", "6", "-e", "0", "-i", "0"}},
    {{"extent", "-a", "add", "-p", "7", "-e", "0", "-i", "0", "-l", "1"}, 1, kLostMember},
    {{"extent", "-a", "split", "-p", "7", "-e", "0", "-i", "0", "-o", "1000"}},
    {{"extent", "-a", "delete", "-p", "7", "-e", "0", "-i", "0"},
     1,
     "\"$CLI\" extent -a split -p 7 -e 0 -i 0 -o 1000"},
    {{"import", "-k", "1", "-f", "all.cfg"}, 1, kBackup},
    {{"import", "-p", "1", "-f", "all.cfg"}, 1, kBackup},
    {{"import", "-l", "0", "-f", "all.cfg"}, 1, kBackup},
    {{"import", "-a", "-f", "all.cfg"}, 17, kBackup},
    {{"import", "-f", "all.cfg"}, 17, kBackup},
    {{"import", "-c", "-f", "all.cfg"}, 23, kBackup},
    {{"import", "-i", "-f", "all.cfg"}, 0, kBackup},
    {{"init", "-a", "start", "-l", "1", "-i", "0"}},
    {{"init", "-a", "stop", "-l", "1", "-i", "0"}, 1, kInitialization},
    {{"init", "-a", "pause", "-l", "1", "-i", "0"}, 1, kInitialization},
    {{"init", "-a", "resume", "-l", "1", "-i", "0"}, 1, kInitialization + "\"$CLI\" init -a pause -l 1 -i 0"},
    {{"logdrv", "-a", "mod", "-i", "0", "-l", "0", "-s", "name=Other"}},
    {{"logdrv", "-a", "locate", "-l", "0", "-i", "0", "-d", "9"}},
    {{"logdrv", "-a", "add", "-i", "0", "-p", "7 8", "-z", "name=New,raid=raid1,capacity=2000"}},
    {{"logdrv", "-a", "del", "-i", "0", "-l", "0"}},
    {{"migrate", "-a", "start", "-l", "1", "-i", "0", "-p", "7", "-e", "0", "-s", "raid=raid5"}},
    {{"migrate", "-a", "pause", "-l", "1", "-i", "0"}, 1, kMigration},
    {{"migrate", "-a", "resume", "-l", "1", "-i", "0"},
     1,
     kMigration + "\"$CLI\" migrate -a pause -l 1 -i 0"},
    {{"mp", "-a", "start", "-p", "1", "-i", "0"}},
    {{"mp", "-a", "stop", "-p", "1", "-i", "0"}, 1, kPatrol},
    {{"mp", "-a", "pause", "-p", "1", "-i", "0"}, 1, kPatrol},
    {{"mp", "-a", "resume", "-p", "1", "-i", "0"}, 1, kPatrol + "\"$CLI\" mp -a pause -p 1 -i 0"},
    {{"phydrv", "-a", "mod", "-p", "1", "-i", "0", "-s", "writecache=disable"}},
    {{"phydrv", "-a", "locate", "-p", "1", "-i", "0", "-d", "9"}},
    {{"phydrv", "-a", "wipe", "-p", "6", "-i", "0"}},
    {{"phydrv", "-a", "set3G", "-p", "1", "-i", "0", "-e", "1"}},
    {{"rb", "-a", "start", "-l", "1", "-i", "0", "-p", "7", "-e", "0"}, 1, kLostMember},
    {{"rb", "-a", "abort", "-l", "1", "-i", "0"}, 1, kRebuild},
    {{"rb", "-a", "pause", "-l", "1", "-i", "0"}, 1, kRebuild},
    {{"rb", "-a", "resume", "-l", "1", "-i", "0"}, 1, kRebuild + "\"$CLI\" rb -a pause -l 1 -i 0"},
    {{"rb", "-a", "restart", "-l", "1", "-i", "0"}, 1, kRebuild},
    {{"rc", "-a", "start", "-l", "1", "-i", "0"}},
    {{"rc", "-a", "stop", "-l", "1", "-i", "0"}, 1, kCheck},
    {{"rc", "-a", "pause", "-l", "1", "-i", "0"}, 1, kCheck},
    {{"rc", "-a", "resume", "-l", "1", "-i", "0"}, 1, kCheck + "\"$CLI\" rc -a pause -l 1 -i 0"},
    {{"sync", "-l", "1", "-i", "0"}},
    {{"sync", "-i", "0", "-l", "1"}},
};
