// The ctrl command. Both functions take the word table and return a result code.
#pragma once

// ctrl [-a list] [-i id] [-c count] [-v]: a table of the controllers, or a block for each.
int ListControllerInfo(int wordCount, char** words);

// ctrl -a mod [-i id] -s settings: changes a controller's settings, all items or none.
int SetControllerSettings(int wordCount, char** words);
