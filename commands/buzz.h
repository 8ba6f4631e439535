// The buzz command. Both functions take the word table and return a result code.
#pragma once

// buzz [-a list] [-i id] [-c count]: whether the controllers' buzzers are enabled.
int ListBuzzStatus(int wordCount, char** words);

// buzz -a enable|disable [-i id]
int SetBuzzSettings(int wordCount, char** words);
