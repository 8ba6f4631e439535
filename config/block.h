// Blocks of the configuration file: a run of "key value" lines closed by an end marker. A kind of
// block is one table of keys, each with how its value is written and read; here is what walks them.
#pragma once

#include <cstddef>
#include <cstdio>
#include <cstring>
#include <span>

#include "util/utils.h"

inline constexpr char kEndMarker[] = "[End]";

// The text of one block as it is written; what does not fit is dropped.
inline constexpr std::size_t kBlockTextSize = 2048;
struct BlockText {
    char* text; // kBlockTextSize bytes of the caller's
    std::size_t length;
};
[[gnu::format(printf, 2, 3)]] void append(BlockText* block, const char* format, ...);

// A whitespace-delimited word of the file; longer ones are cut.
struct Token {
    char text[128];
};

// Reads the next word; false when the file ends before one. Stops before the white space after it.
bool readToken(std::FILE* file, Token* token);

// Reads a number as scanf does: what is no number stays in the file, and *number as it was.
void readInteger(std::FILE* file, int* number);

// Reads one word as a flag: set by "Enable" in any case, cleared by anything else.
bool readEnable(std::FILE* file);

// One key. Where the writer's and the reader's idea of a value differ, the row says why.
template <typename Source, typename Record>
struct Key {
    const char* key; // with its angle brackets, exact
    void (*write)(BlockText* text, const Source& source);
    void (*read)(std::FILE* file, Record* record);
    bool (*written)(const Source& source) = nullptr; // null: always
};

// Reads a number into any integer field, cut to its width.
template <auto field, typename Record>
void readNumber(std::FILE* file, Record* record) {
    int number = static_cast<int>(record->*field);
    readInteger(file, &number);
    record->*field = static_cast<std::remove_reference_t<decltype(record->*field)>>(number);
}

template <auto field, typename Record>
void readFlag(std::FILE* file, Record* record) {
    record->*field = readEnable(file);
}

// Writes the key lines and the end marker into text, which has room for kBlockTextSize bytes.
template <typename Source, typename Record>
void writeBlock(std::span<const Key<Source, Record>> keys, const Source& source, char* text) {
    BlockText block = {text, 0};
    text[0] = '\0';
    for (const Key<Source, Record>& row : keys) {
        if (row.written != nullptr && !row.written(source))
            continue;
        append(&block, "%s ", row.key);
        row.write(&block, source);
        append(&block, "\n");
    }
    append(&block, "%s \n", kEndMarker);
}

// Reads a block into a record, which is cleared before: the index after the marker, then key lines, in
// any order, up to the end marker or the end of the file. A word that is no key is passed over, and so
// is its value; of a key that comes twice the last counts.
template <typename Source, typename Record>
void readBlock(std::span<const Key<Source, Record>> keys, std::FILE* file, Record* record) {
    *record = {};
    readInteger(file, &record->setIndex);
    Token token;
    while (readToken(file, &token) && std::strcmp(token.text, kEndMarker) != 0)
        for (const Key<Source, Record>& row : keys)
            if (std::strcmp(token.text, row.key) == 0)
                row.read(file, record);
}
