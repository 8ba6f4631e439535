// Text helpers shared by every command.
#include "util/utils.h"

#include <cstdlib>
#include <cstring>

// Only ASCII letters have case: the program never sets a locale, and calling the C library's functions
// would page in its tables.
//
// Compatibility: bytes compare as signed characters, so those above 127 sort before all letters.
static int upperCase(char c) {
    return static_cast<signed char>(c >= 'a' && c <= 'z' ? c - 'a' + 'A' : c);
}

static char lowerCase(char c) {
    return static_cast<char>(c >= 'A' && c <= 'Z' ? c - 'A' + 'a' : c);
}

static bool isDigit(char c) {
    return c >= '0' && c <= '9';
}

int strCmpNoCase(const char* a, const char* b) {
    for (; *a != '\0' && *b != '\0'; ++a, ++b) {
        const int left = upperCase(*a), right = upperCase(*b);
        if (left != right)
            return left > right ? 1 : -1;
    }
    return (*a != '\0') - (*b != '\0');
}

void strToLowerCase(char* text) {
    if (text == nullptr)
        return;
    for (; *text != '\0'; ++text)
        *text = lowerCase(*text);
}

static bool startsWithNoCase(const char* text, const char* start) {
    for (; *start != '\0'; ++text, ++start)
        if (lowerCase(*text) != lowerCase(*start))
            return false;
    return true;
}

const char* strstrNoCase(const char* haystack, const char* needle) {
    for (;; ++haystack) {
        if (startsWithNoCase(haystack, needle))
            return haystack;
        if (*haystack == '\0')
            return nullptr;
    }
}

const char* toLimitStr(const char* text, const char* stops) {
    return text + std::strcspn(text, stops);
}

const char* skipLimitStr(const char* text, const char* skipped) {
    return text + std::strspn(text, skipped);
}

int IsValidDecString(const char* text) {
    const char* end = text;
    while (isDigit(*end))
        ++end;
    return end != text && *end == '\0';
}

int TranslateStr2Int(const char* description, const char* text, std::uint32_t* value) {
    if (!IsValidDecString(text)) {
        std::printf("Invalid %s '%s' specified\n", description, text);
        return 0;
    }
    *value = static_cast<std::uint32_t>(std::strtol(text, nullptr, 10));
    return 1;
}

int atoiText(const char* text) {
    return static_cast<int>(std::strtol(text, nullptr, 10));
}

int CheckIsIncludeCharacter(int count, char** table, const char* word) {
    if (table == nullptr || word == nullptr)
        return 0;
    for (int i = 0; i < count; ++i)
        if (strCmpNoCase(table[i], word) == 0)
            return 1;
    return 0;
}

void GetStrFromFile(std::FILE* file, char* buffer, const char* delimiters) {
    GetStrFromFileUpTo(file, buffer, SIZE_MAX, delimiters);
}

void GetStrFromFileUpTo(std::FILE* file, char* buffer, std::size_t size, const char* delimiters) {
    if (buffer == nullptr || size == 0 || std::feof(file))
        return;
    std::size_t length = 0;
    do {
        const char c = static_cast<char>(std::getc(file)); // EOF becomes 0xFF
        if (c == '\0' || std::strchr(delimiters, c) != nullptr)
            break;
        if (length < size - 1)
            buffer[length++] = c;
    } while (!std::feof(file) && !std::ferror(file));
    buffer[length] = '\0';
}
