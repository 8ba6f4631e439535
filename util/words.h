// The word table, through which every command function receives its arguments.
#pragma once

// Slot 0 holds the command word, the others its options and values. The slots are never cleared: a
// command that reads a missing value sees what an earlier line left in that slot.
inline constexpr int kMaxWords = 16;
inline constexpr int kWordSize = 257; // 256 characters and the NUL

// The word in a slot, which may be stale; empty past the end of the table.
inline const char* wordAt(char** words, int index) {
    return index < kMaxWords && words[index] != nullptr ? words[index] : "";
}
