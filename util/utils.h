// Text helpers for user input and files: case-insensitive comparison, strict numbers and delimited
// fields. ID lists are in idlist.h.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdio>

// Three-way case-insensitive comparison: -1, 0 or 1. A proper prefix sorts first.
int strCmpNoCase(const char* a, const char* b);

// Lower-cases every byte in place. text may be null.
void strToLowerCase(char* text);

// The first occurrence of needle in haystack, ignoring case; null if there is none.
const char* strstrNoCase(const char* haystack, const char* needle);

// Returns the first character of text that is in stops, or the NUL.
const char* toLimitStr(const char* text, const char* stops);

// Returns the first character of text that is not in skipped, or the NUL.
const char* skipLimitStr(const char* text, const char* skipped);

// Returns 1 if text consists of one or more decimal digits, else 0.
int IsValidDecString(const char* text);

// Parses a decimal number and keeps its low 32 bits. If text is not one, prints that the description
// (such as "controller ID") is invalid, leaves value unchanged and returns 0.
int TranslateStr2Int(const char* description, const char* text, std::uint32_t* value);

// The number at the start of text as the C library's atoi reads it; 0 if there is none. Defined for
// every text: the number is clamped to 64 bits, then its low 32 bits are kept.
int atoiText(const char* text);

// Returns 1 if word is one of the first count words of table, ignoring case; else 0, also for null
// pointers and counts below 1.
int CheckIsIncludeCharacter(int count, char** table, const char* word);

// Reads a field up to one of the delimiters or a NUL byte, which is consumed but not stored. A field
// that ends with the file gets the byte 0xFF appended; at the end of the file buffer is unchanged. The
// buffer must hold the longest field; GetStrFromFileUpTo() takes its size and truncates the field.
void GetStrFromFile(std::FILE* file, char* buffer, const char* delimiters);
void GetStrFromFileUpTo(std::FILE* file, char* buffer, std::size_t size, const char* delimiters);
