// Writes block texts within their bounds, and reads the words and numbers of a configuration file.
#include "config/block.h"

#include <cctype>
#include <cstdarg>

#include "util/utils.h"

void append(BlockText* block, const char* format, ...) {
    const std::size_t available = kBlockTextSize - block->length;
    std::va_list arguments;
    va_start(arguments, format);
    const int length = std::vsnprintf(block->text + block->length, available, format, arguments);
    va_end(arguments);
    if (length > 0)
        block->length +=
            static_cast<std::size_t>(length) < available ? static_cast<std::size_t>(length) : available - 1;
}

bool readToken(std::FILE* file, Token* token) {
    int c = std::getc(file);
    while (c != EOF && std::isspace(c))
        c = std::getc(file);
    if (c == EOF)
        return false;
    std::size_t length = 0;
    for (; c != EOF && !std::isspace(c); c = std::getc(file))
        if (length < sizeof token->text - 1)
            token->text[length++] = static_cast<char>(c);
    token->text[length] = '\0';
    if (c != EOF)
        std::ungetc(c, file);
    return true;
}

void readInteger(std::FILE* file, int* number) {
    // Compatibility: a missing number is not an error; the word in its place is read as the next key.
    static_cast<void>(std::fscanf(file, "%d", number) == 1);
}

bool readEnable(std::FILE* file) {
    Token token;
    return readToken(file, &token) && strCmpNoCase(token.text, "Enable") == 0;
}
