// Reading a command's options: letters, most followed by a value, in the order they stand. A command
// lists its options with where their values go; one reader walks the words for every command.
#pragma once

#include <cstdint>
#include <span>

#include "util/idlist.h"
#include "util/result.h"

// Numbers given as one word, at most Room of them.
template <int Room = kMaxListItems>
struct IdList {
    int count;
    std::uint32_t id[Room];
};

// A row of a command's option table, made by one of the functions below.
struct Option {
    enum Kind { flag, number, atoiNumber, count, idList, text, skipped };

    const char* letter = nullptr; // with its dash; case does not matter
    Kind kind = skipped;
    const char* noun = nullptr;          // what a errorMessage calls the value
    std::uint32_t* value = nullptr;      // of numbers, counts and the numbers of a list
    int* listed = nullptr;               // how many numbers a list has
    int room = 0;                        // how many it may have
    const char** word = nullptr;         // of a text
    bool* given = nullptr;               // set when the option stands in the line, if anybody asks
    std::uint32_t* single = nullptr;     // set to 1 when the option stands in the line, likewise
    std::uint32_t most = 0;              // of count: only 1 .. most is taken
    std::uint32_t typedFrom = 0;         // what the user calls the first one: 1 for drives
    Result::Code refused = Result::done; // of a value that is not a number
};

// Takes no value.
Option flagOption(const char* letter, bool* given);

// A number; what is none ends the command with refused.
Option numberOption(const char* letter, const char* noun, std::uint32_t* value, Result::Code refused,
                    bool* given = nullptr);

// A number as the C library's atoi reads it: never refused.
Option atoiOption(const char* letter, std::uint32_t* value);

// A drive ID, typed from 1 and kept from 0. In a listing it also asks for a single drive.
Option driveOption(const char* letter, const char* noun, std::uint32_t* value,
                   std::uint32_t* single = nullptr);

// A number that is kept only when it is 1 .. most.
Option countOption(const char* letter, const char* noun, std::uint32_t* value, std::uint32_t most);

// A list of numbers; typedFrom is 1 for drive IDs, typed from 1 and kept from 0. The list given last
// counts.
Option listOption(const char* letter, std::uint32_t* numbers, int* count, int room, std::uint32_t typedFrom);

template <int Room>
Option listOption(const char* letter, IdList<Room>* list) {
    return listOption(letter, list->id, &list->count, Room, 0);
}

template <int Room>
Option driveListOption(const char* letter, IdList<Room>* list) {
    return listOption(letter, list->id, &list->count, Room, 1);
}

// A word taken as it is; *word points into the word table.
Option textOption(const char* letter, const char** word);

// Its value is looked at elsewhere.
Option ignoredOption(const char* letter);

// Where the options of a listing start: after "-a" and its action, or after the command word.
int firstOption(int wordCount, char** words);

// Reads the option at words[*index] and moves *index past it and its value, which when missing is read
// from the next slot, whatever that holds. A refused value returns its row's result. A word that is no
// option returns kUnknownOption and stays.
inline constexpr int kUnknownOption = -1;
int readOption(char** words, int* index, std::span<const Option> options);

// Reads the options from words[first] on. A word that is no option prints errorMessage and returns
// Result::badValue; a refused value returns its row's result. stoppedAt, when asked for, is the index
// after the last word read.
int readOptions(int wordCount, char** words, int first, std::span<const Option> options,
                const char* errorMessage, int* stoppedAt = nullptr);
