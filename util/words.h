// The word table: a command's words as every command function receives them.
#pragma once

// Slot 0 holds the command word, the others its options and values. The slots live as long as the
// program and keep what they held: a command that finds a value missing sees what an earlier line
// left there.
inline constexpr int kMaxWords = 16;
inline constexpr int kWordSize = 257; // 256 characters and the NUL

// The word in a slot, be it one of the command's words or stale; empty beyond the table's end.
inline const char* wordAt(char** words, int index) {
    return index < kMaxWords && words[index] != nullptr ? words[index] : "";
}
