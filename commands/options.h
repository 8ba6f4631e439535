// Parses the options of a command: names, most of them followed by a value, in any order. A command lists
// its options and the variables that receive their values; all commands share the parser.
#pragma once

#include <cstdint>
#include <span>

#include "util/idlist.h"
#include "util/result.h"

// A list of numbers in one word.
template <int Capacity = kMaxListItems>
struct IdList {
    int count;
    std::uint32_t id[Capacity];
};

// A row of a command's option table, made by one of the functions below.
struct Option {
    enum class Kind { flag, number, atoiNumber, boundedNumber, idList, text, ignored };

    const char* name = nullptr; // with its dash; case does not matter
    Kind kind = Kind::ignored;
    const char* valueName = nullptr;       // what error messages call the value
    std::uint32_t* value = nullptr;        // receives a number, or the numbers of a list
    int* count = nullptr;                  // receives the length of a list
    int capacity = 0;                      // maximum length of a list
    const char** text = nullptr;           // receives a text
    bool* present = nullptr;               // set to true if the option is present; may be null
    std::uint32_t* impliedCount = nullptr; // set to 1 if the option is present; may be null
    std::uint32_t max = 0;                 // a bounded number is stored only if it is 1 .. max
    std::uint32_t base = 0;                // the user's ID of the first object: 1 for drives
    Result::Code errorCode = Result::done; // if the value is not a number
};

// Has no value.
Option flagOption(const char* name, bool* present);

// A decimal number; any other value ends the command with errorCode.
Option numberOption(const char* name, const char* valueName, std::uint32_t* value, Result::Code errorCode,
                    bool* present = nullptr);

// A number as the C library's atoi reads it; never an error.
Option atoiOption(const char* name, std::uint32_t* value);

// A drive ID; users count from 1, the result counts from 0. In a listing it also limits the count to 1.
Option driveOption(const char* name, const char* valueName, std::uint32_t* value,
                   std::uint32_t* impliedCount = nullptr);

// A number that is stored only if it is 1 .. max.
Option countOption(const char* name, const char* valueName, std::uint32_t* value, std::uint32_t max);

// A list of numbers. base is subtracted from each: 1 for drive IDs. If the option is repeated, the last
// list replaces the others.
Option listOption(const char* name, std::uint32_t* numbers, int* count, int capacity, std::uint32_t base);

template <int Capacity>
Option listOption(const char* name, IdList<Capacity>* list) {
    return listOption(name, list->id, &list->count, Capacity, 0);
}

template <int Capacity>
Option driveListOption(const char* name, IdList<Capacity>* list) {
    return listOption(name, list->id, &list->count, Capacity, 1);
}

// Any word; *text points into the word table.
Option textOption(const char* name, const char** text);

// Skipped together with its value, which the command reads separately.
Option ignoredOption(const char* name);

// The index of the first option of a listing: after "-a" and its action, or after the command word.
int firstOption(int wordCount, char** words);

// Parses the option at words[*index] and moves *index past it and its value. A missing value is read
// from the next slot, which may be stale. Returns the option's errorCode for an invalid value, and
// kUnknownOption, leaving *index unchanged, for a word that is not an option.
inline constexpr int kUnknownOption = -1;
int readOption(char** words, int* index, std::span<const Option> options);

// Parses the options from words[first] on. A word that is not an option prints errorMessage and returns
// Result::badValue; an invalid value returns its option's errorCode. endIndex, which may be null,
// receives the index after the last word parsed.
int readOptions(int wordCount, char** words, int first, std::span<const Option> options,
                const char* errorMessage, int* endIndex = nullptr);
