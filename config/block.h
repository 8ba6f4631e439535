// Blocks of the configuration file: "key value" lines, closed by an end marker. Each kind of block has
// one table of its keys, with a function to write and one to read the value. The functions here walk
// these tables.
#pragma once

#include <cstddef>
#include <cstdio>
#include <cstring>
#include <span>

inline constexpr char kEndMarker[] = "[End]";

// The text of one block, truncated to its buffer.
inline constexpr std::size_t kBlockTextSize = 2048;
struct BlockText {
    char* text; // kBlockTextSize bytes, owned by the caller
    std::size_t length;
};
[[gnu::format(printf, 2, 3)]] void append(BlockText* block, const char* format, ...);

// A word of the file, delimited by white space; longer ones are truncated.
struct Token {
    char text[128];
};

// Reads the next word; false when the file ends before one. Stops before the white space after it.
bool readToken(std::FILE* file, Token* token);

// Reads a number as scanf does: anything else stays in the file and leaves *number unchanged.
void readInteger(std::FILE* file, int* number);

// Reads one word as a flag: "Enable" in any case sets it, anything else clears it.
bool readEnable(std::FILE* file);

// One key. If a value is written and read differently, a comment at the row explains why.
template <typename Source, typename Record>
struct Key {
    const char* key; // with its angle brackets, exact
    void (*write)(BlockText* text, const Source& source);
    void (*read)(std::FILE* file, Record* record);
    bool (*shouldWrite)(const Source& source) = nullptr; // null: always
};

// Reads a number into any integer field, truncated to its width.
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

// Writes the key lines and the end marker to text, which has kBlockTextSize bytes.
template <typename Source, typename Record>
void writeBlock(std::span<const Key<Source, Record>> keys, const Source& source, char* text) {
    BlockText block = {text, 0};
    text[0] = '\0';
    for (const Key<Source, Record>& row : keys) {
        if (row.shouldWrite != nullptr && !row.shouldWrite(source))
            continue;
        append(&block, "%s ", row.key);
        row.write(&block, source);
        append(&block, "\n");
    }
    append(&block, "%s \n", kEndMarker);
}

// Clears the record and reads a block into it: the index after the marker, then key lines in any order,
// up to the end marker or the end of the file. Unknown keys and their values are skipped. The last of
// several lines with the same key counts.
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
