// The bga command. Takes the word table and returns a result code.
#pragma once

// bga [-a list] [-l id [-i id]]: the background activity of one logical drive.
int ListBGAInfo(int wordCount, char** words);
