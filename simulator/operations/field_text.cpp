// Text fields of requests.
#include "simulator/operations/operation.h"

namespace q5sim {

// Length in bytes of the character at an offset; 0: not UTF-8.
static std::size_t characterLength(const std::string& text, std::size_t at) {
    const auto byte = [&](std::size_t i) { return static_cast<unsigned char>(text[i]); };
    const unsigned lead = byte(at);
    const std::size_t length = lead < 0x80 ? 1 : lead >= 0xC2 && lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : 4;
    if ((lead >= 0x80 && lead < 0xC2) || lead > 0xF4 || at + length > text.size())
        return 0;
    for (std::size_t i = at + 1; i < at + length; i++)
        if ((byte(i) & 0xC0) != 0x80)
            return 0;
    const bool overlong = (lead == 0xE0 && byte(at + 1) < 0xA0) || (lead == 0xF0 && byte(at + 1) < 0x90);
    const bool outside = (lead == 0xED && byte(at + 1) > 0x9F) || (lead == 0xF4 && byte(at + 1) > 0x8F);
    return overlong || outside ? 0 : length;
}

std::string fieldText(const char* field, std::size_t size) {
    std::string text(field, ::strnlen(field, size));
    for (std::size_t at = 0; at < text.size();) {
        const std::size_t length = characterLength(text, at);
        if (length == 0)
            text[at] = '?';
        at += std::max<std::size_t>(1, length);
    }
    return text;
}

} // namespace q5sim
