// Records what the commands compare an unknown word with. The functions in interpose.cpp replace those
// that the commands compare words with, and call the originals.
#pragma once

#include <string>
#include <vector>

// Unknown to every command, no number, and the path of no file.
inline constexpr char kUnknownWord[] = "\x01/\x01";

// What happened while one line ran, in order and each once.
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
