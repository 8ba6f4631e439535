// Helpers for the texts that users type and files hold: comparison without regard to case, strict
// numbers, and delimited fields. ID lists are in idlist.h, value words in commands/vocabulary.h.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdio>

// Three-way comparison without regard to case: -1, 0 or 1; a proper prefix sorts first.
int strCmpNoCase(const char* a, const char* b);

// Lower-cases every byte in place. A null text is left alone.
void strToLowerCase(char* text);

// The first place in haystack where needle stands, without regard to case; null when nowhere.
const char* strstrNoCase(const char* haystack, const char* needle);

// Advances to the first character that is one of stops, or to the NUL.
const char* toLimitStr(const char* text, const char* stops);

// Advances past the characters that are in skipped, or to the NUL.
const char* skipLimitStr(const char* text, const char* skipped);

// 1 when text is one or more decimal digits and nothing else.
int IsValidDecString(const char* text);

// Reads a plain decimal number, of which the low 32 bits are kept. Otherwise says that the
// description (such as "controller ID") is invalid and returns 0; value is then left unchanged.
int TranslateStr2Int(const char* description, const char* text, std::uint32_t* value);

// The number at the start of text as the C library's atoi reads it; 0 when there is none. Defined
// for every text: what exceeds 64 bits becomes their limit, and the low 32 bits are kept.
int atoiText(const char* text);

// 1 when word is one of the first count words of table, without regard to case; 0 otherwise, also
// for null pointers and counts below 1.
int CheckIsIncludeCharacter(int count, char** table, const char* word);

// Reads a field up to one of the delimiters or a NUL byte, which is consumed but not stored. At the
// end of the file the byte 0xFF closes the field; a file already at its end leaves buffer unchanged.
// The caller's buffer must hold the longest field; GetStrFromFileUpTo() is told its size instead,
// and drops what does not fit.
void GetStrFromFile(std::FILE* file, char* buffer, const char* delimiters);
void GetStrFromFileUpTo(std::FILE* file, char* buffer, std::size_t size, const char* delimiters);
