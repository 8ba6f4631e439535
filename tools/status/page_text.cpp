// Pieces of HTML, and escaping of untrusted text.
#include <cstdint>
#include <cstdio>

#include "snapshot/text.h"
#include "tools/status/page_parts.h"

// Whether HTML forbids the character: the last two of each plane, and U+FDD0 to U+FDEF.
static bool isNoncharacter(std::string_view character) {
    const auto byte = [&](std::size_t at) { return static_cast<std::uint8_t>(character[at]); };
    if (character.size() == 3 && byte(0) == 0xEF && byte(1) == 0xB7)
        return byte(2) >= 0x90 && byte(2) <= 0xAF;
    if (character.size() < 3)
        return false;
    const std::size_t last = character.size() - 1;
    const bool endOfPlane = character.size() == 3 ? byte(0) == 0xEF : (byte(1) & 0x0F) == 0x0F;
    return endOfPlane && byte(last - 1) == 0xBF && byte(last) >= 0xBE;
}

static void appendEscaped(std::string* html, std::string_view bytes) {
    char escaped[8];
    for (const char byte : bytes) {
        std::snprintf(escaped, sizeof escaped, "\\x%02x",
                      static_cast<unsigned>(static_cast<unsigned char>(byte)));
        *html += escaped;
    }
}

static const char* referenceFor(char character) {
    switch (character) {
    case '&':
        return "&amp;";
    case '<':
        return "&lt;";
    case '>':
        return "&gt;";
    case '"':
        return "&quot;";
    case '\'':
        return "&#39;";
    default:
        return nullptr;
    }
}

std::string htmlText(std::string_view text) {
    const std::string line = printable(text);
    std::string html;
    for (std::string_view left = line; !left.empty();) {
        const std::string_view character = left.substr(0, characterLength(left));
        if (const char* reference = referenceFor(character[0]))
            html += reference;
        else if (isNoncharacter(character))
            appendEscaped(&html, character);
        else
            html += character;
        left.remove_prefix(character.size());
    }
    return html;
}

std::string isolatedText(std::string_view text) {
    return trimmed(text).empty() ? "(empty)" : "<bdi>" + htmlText(text) + "</bdi>";
}

std::string megabytesText(std::uint64_t sectors) {
    static constexpr std::uint64_t sectorsPerMb = 2048;
    std::string digits = std::to_string(sectors / sectorsPerMb);
    for (std::size_t at = digits.size(); at > 3;) {
        at -= 3;
        digits.insert(at, 1, ',');
    }
    return digits + " MB";
}

std::string badge(const char* word, const char* kind) {
    return std::string("<span class=\"badge ") + kind + "\">" + word + "</span>";
}

void addFact(std::string* page, const char* term, const std::string& html) {
    *page += std::string("<dt>") + term + "</dt><dd>" + html + "</dd>\n";
}
