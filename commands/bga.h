// The bga command. Takes the word table and returns a result code.
#pragma once

// bga [-a list] [-l id [-i id]]: what one logical drive is doing in the background.
int ListBGAInfo(int wordCount, char** words);
