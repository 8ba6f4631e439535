// The handlers of the command words: each looks at the second word (the third after "-a") and calls
// the command function that does the work, with the words unchanged.
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
