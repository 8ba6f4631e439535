// What the commands compare an unknown word with. These functions stand in the places of those that
// the commands compare words with, and hand on to them.
#pragma once

#include <string>
#include <vector>

// Unknown to every command, no number, and the path of no file.
inline constexpr char kUnknownWord[] = "\x01/\x01";

// What was heard while one line ran, in order and each once.
struct Recording {
    std::vector<std::string> compared; // words that the unknown word might have been
    std::vector<std::string> sought;   // words that a text with the unknown word might have held
    std::vector<std::string> files;    // options whose value is a file's name
    std::vector<std::string> lists;    // options whose value is a list of numbers
};

// Runs a line: the words, and unknown words up to count.
Recording hear(const std::vector<std::string>& line, int count);

// Adds the words that are not there yet.
void addNew(std::vector<std::string>* words, const std::vector<std::string>& more);
