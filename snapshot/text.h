// Texts from adapters and files, prepared for one line of output.
#pragma once

#include <string>
#include <string_view>

// The length of the UTF-8 character at the start of the text; 0 if there is none.
std::size_t characterLength(std::string_view text);

bool isUtf8(std::string_view text);

// Without the blanks at both ends that pad the fields of drives. Valid as long as the text.
std::string_view trimmed(std::string_view text);

// The text as one line can show it: control characters, bidirectional formatting characters, and bytes that
// are not UTF-8 become "\xNN"; a backslash is doubled.
std::string printable(std::string_view text);

// The inverse of printable(). Anything that is not an escape sequence stays as it is.
std::string fromPrintable(std::string_view line);

// The text as UTF-8: each byte that belongs to no character becomes U+FFFD.
std::string asUtf8(std::string_view text);

// "1 drive", "2 drives"
std::string counted(std::size_t count, const char* word);

// A number with a decimal point before its last places, of which there is at least one: decimal(12060, 3) is
// "12.060".
std::string decimal(long long value, int places);
