// The handlers of the command words. All but do_cmd_help select a command function by the second word
// (after "-a", by the third) and call it with the words unchanged.
#pragma once

int do_cmd_battery(int wordCount, char** words);
int do_cmd_bga(int wordCount, char** words);
int do_cmd_buzz(int wordCount, char** words);
int do_cmd_controller(int wordCount, char** words);
int do_cmd_enclosure(int wordCount, char** words);
int do_cmd_event(int wordCount, char** words);
int do_cmd_export(int wordCount, char** words);
int do_cmd_extent(int wordCount, char** words);
int do_cmd_import(int wordCount, char** words);
int do_cmd_init(int wordCount, char** words);
int do_cmd_logdrv(int wordCount, char** words);
int do_cmd_mediapatrol(int wordCount, char** words);
int do_cmd_migrate(int wordCount, char** words);
int do_cmd_phydrv(int wordCount, char** words);
int do_cmd_rebuild(int wordCount, char** words);
int do_cmd_redundancyCheck(int wordCount, char** words);
int do_cmd_sync(int wordCount, char** words);

// help and ?, in cmddef.cpp: prints both texts of the second word, or of the command word if it is the
// only one. Always Result::badCount.
int do_cmd_help(int wordCount, char** words);
