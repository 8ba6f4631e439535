// Texts from adapters and files, prepared for one line of output.
#include "snapshot/text.h"

#include <charconv>
#include <cstdint>
#include <cstdio>

static std::uint32_t byteAt(std::string_view text, std::size_t at) {
    return static_cast<unsigned char>(text[at]);
}

static std::size_t expectedLength(std::uint32_t lead) {
    if (lead < 0x80)
        return 1;
    if (lead < 0xC2 || lead > 0xF4)
        return 0;
    return lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : 4;
}

static std::uint32_t codePoint(std::string_view text, std::size_t length) {
    static constexpr std::uint32_t leadMask[] = {0, 0x7F, 0x1F, 0x0F, 0x07};
    std::uint32_t code = byteAt(text, 0) & leadMask[length];
    for (std::size_t i = 1; i < length; ++i)
        code = code << 6 | (byteAt(text, i) & 0x3F);
    return code;
}

std::size_t characterLength(std::string_view text) {
    static constexpr std::uint32_t least[] = {0, 0, 0x80, 0x800, 0x10000};
    const std::size_t length = text.empty() ? 0 : expectedLength(byteAt(text, 0));
    if (length == 0 || length > text.size())
        return 0;
    for (std::size_t i = 1; i < length; ++i)
        if ((byteAt(text, i) & 0xC0) != 0x80)
            return 0;
    const std::uint32_t code = codePoint(text, length);
    const bool surrogate = code >= 0xD800 && code <= 0xDFFF;
    return code < least[length] || code > 0x10FFFF || surrogate ? 0 : length;
}

bool isUtf8(std::string_view text) {
    while (!text.empty()) {
        const std::size_t length = characterLength(text);
        if (length == 0)
            return false;
        text.remove_prefix(length);
    }
    return true;
}

std::string_view trimmed(std::string_view text) {
    const std::size_t first = text.find_first_not_of(' ');
    return first == std::string_view::npos ? std::string_view()
                                           : text.substr(first, text.find_last_not_of(' ') - first + 1);
}

// Line and paragraph separators count as control characters too.
static bool changesDisplay(std::uint32_t code) {
    return code < 0x20 || (code >= 0x7F && code < 0xA0) || (code >= 0x200E && code <= 0x200F) ||
           (code >= 0x2028 && code <= 0x202E) || (code >= 0x2066 && code <= 0x2069) || code == 0xFEFF;
}

static void appendEscaped(std::string* line, std::string_view bytes) {
    char escaped[8];
    for (const char byte : bytes) {
        std::snprintf(escaped, sizeof escaped, "\\x%02x",
                      static_cast<unsigned>(static_cast<unsigned char>(byte)));
        *line += escaped;
    }
}

std::string printable(std::string_view text) {
    std::string line;
    while (!text.empty()) {
        const std::size_t length = characterLength(text);
        const std::string_view character = text.substr(0, length == 0 ? 1 : length);
        if (character == "\\")
            line += "\\\\";
        else if (length == 0 || changesDisplay(codePoint(text, length)))
            appendEscaped(&line, character);
        else
            line += character;
        text.remove_prefix(character.size());
    }
    return line;
}

// The byte of "\\xNN" at the start of the line; -1 if there is none.
static int escapedByte(std::string_view line) {
    unsigned value = 0;
    if (line.size() < 4 || !line.starts_with("\\x"))
        return -1;
    const auto result = std::from_chars(line.data() + 2, line.data() + 4, value, 16);
    return result.ptr == line.data() + 4 ? static_cast<int>(value) : -1;
}

std::string fromPrintable(std::string_view line) {
    std::string text;
    while (!line.empty()) {
        const int byte = escapedByte(line);
        text += byte >= 0 ? static_cast<char>(byte) : line.front();
        line.remove_prefix(byte >= 0 ? 4 : line.starts_with("\\\\") ? 2 : 1);
    }
    return text;
}

std::string asUtf8(std::string_view text) {
    std::string result;
    while (!text.empty()) {
        const std::size_t length = characterLength(text);
        result += length == 0 ? std::string_view("\xEF\xBF\xBD") : text.substr(0, length);
        text.remove_prefix(length == 0 ? 1 : length);
    }
    return result;
}

std::string counted(std::size_t count, const char* word) {
    return std::to_string(count) + " " + word + (count == 1 ? "" : "s");
}

std::string decimal(long long value, int places) {
    long long scale = 1;
    for (int i = 0; i < places; ++i)
        scale *= 10;
    const long long size = value < 0 ? -value : value;
    char text[48];
    std::snprintf(text, sizeof text, "%s%lld.%0*lld", value < 0 ? "-" : "", size / scale, places,
                  size % scale);
    return text;
}
