// Records what the commands compare an unknown word with. interpose.cpp replaces the functions that compare
// words; its functions call the originals.
#pragma once

#include <string>
#include <vector>

// Not a word of any command, not a number, and not the path of a file.
inline constexpr char kUnknownWord[] = "\x01/\x01";

// What one line did, in order and without duplicates.
struct Recording {
    std::vector<std::string> compared;    // words that the unknown word was compared with
    std::vector<std::string> searchedFor; // words searched for in a text with the unknown word
    std::vector<std::string> files;       // options whose value is a file name
    std::vector<std::string> lists;       // options whose value is a list of numbers
};

// Runs a line, padded with unknown words up to count words.
Recording record(const std::vector<std::string>& line, int count);

// Appends the words that are not in the list yet.
void addNew(std::vector<std::string>* words, const std::vector<std::string>& more);
